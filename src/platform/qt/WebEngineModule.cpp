#include "platform/qt/WebEngineModule.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>
#include <cstdio>

namespace vantor {

QString webEngineModulePath() {
    const QString here = QCoreApplication::applicationDirPath();
    const QString beside = here + QStringLiteral("/libvantor_web.so");
    return QFileInfo::exists(beside) ? beside : here + QStringLiteral("/../lib/vantor/libvantor_web.so");
}

std::unique_ptr<WidgetWebEngine> loadWebEngine(const WebEngineFolders& folders) {
    QLibrary library(webEngineModulePath());
    // The engine complains, at length, that it is a late guest.
    const QtMessageHandler usual = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    library.load();
    qInstallMessageHandler(usual);
    const auto make = reinterpret_cast<MakeWidgetWebEngine>(library.resolve("vantorMakeWebEngine"));
    if (!make) {
        std::fprintf(stderr, "vantor: no web engine: %s\n", qPrintable(library.errorString()));
        return nullptr;
    }
    return std::unique_ptr<WidgetWebEngine>(make(folders));
}

std::string webEngineVersion() {
    QLibrary library(webEngineModulePath());
    const auto version = reinterpret_cast<WebEngineVersion>(library.resolve("vantorWebEngineVersion"));
    return version ? version() : std::string();
}

}  // namespace vantor

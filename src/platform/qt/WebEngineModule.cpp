#include "platform/qt/WebEngineModule.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>
#include <cstdio>

namespace vantor {

namespace {

// The engine complains, at length, that it is a late guest.
bool loadQuietly(QLibrary& library) {
    const QtMessageHandler usual = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const bool loaded = library.load();
    qInstallMessageHandler(usual);
    return loaded;
}

}  // namespace

QString webEngineModulePath() {
    const QString here = QCoreApplication::applicationDirPath();
    const QString beside = here + QStringLiteral("/libvantor_web.so");
    return QFileInfo::exists(beside) ? beside : here + QStringLiteral("/../lib/vantor/libvantor_web.so");
}

std::unique_ptr<WidgetWebEngine> loadWebEngine(const WebEngineFolders& folders) {
    QLibrary library(webEngineModulePath());
    const auto make =
        loadQuietly(library) ? reinterpret_cast<MakeWidgetWebEngine>(library.resolve("vantorMakeWebEngine")) : nullptr;
    if (!make) {
        std::fprintf(stderr, "vantor: no web engine: %s\n", qPrintable(library.errorString()));
        return nullptr;
    }
    return std::unique_ptr<WidgetWebEngine>(make(folders));
}

std::string webEngineVersion() {
    QLibrary library(webEngineModulePath());
    if (!loadQuietly(library)) return {};
    const auto version = reinterpret_cast<WebEngineVersion>(library.resolve("vantorWebEngineVersion"));
    return version ? version() : std::string();
}

std::string webEngineTrouble() {
    QLibrary library(webEngineModulePath());
    return loadQuietly(library) ? std::string() : library.errorString().toStdString();
}

}  // namespace vantor

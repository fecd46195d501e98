#include "platform/qt/ScriptFonts.h"

#include <QtCore/QDirIterator>
#include <QtCore/QStandardPaths>
#include <QtGui/QFontDatabase>

namespace vantor {

QString scriptFontFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/vantor/fonts");
}

void registerScriptFonts() {
    for (const QString& folder : {QStringLiteral(":/fonts/scripts"), scriptFontFolder()}) {
        QDirIterator files(
            folder,
            {QStringLiteral("*.ttf"), QStringLiteral("*.otf"), QStringLiteral("*.TTF"), QStringLiteral("*.OTF")},
            QDir::Files);
        while (files.hasNext()) QFontDatabase::addApplicationFont(files.next());
    }
}

bool hasFontFamily(const QString& family) { return QFontDatabase::families().contains(family, Qt::CaseInsensitive); }

}  // namespace vantor

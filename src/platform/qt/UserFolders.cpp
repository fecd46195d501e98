#include "platform/qt/UserFolders.h"

#include <QtCore/QStandardPaths>

namespace vantor {

namespace {

QString catalogueBelow(QStandardPaths::StandardLocation place) {
    return QStandardPaths::writableLocation(place) + QStringLiteral("/vantor/catalogue");
}

}  // namespace

QString playerCatalogueFolder() { return catalogueBelow(QStandardPaths::GenericDataLocation); }

QString catalogueUpdateFolder() { return catalogueBelow(QStandardPaths::GenericCacheLocation); }

}  // namespace vantor

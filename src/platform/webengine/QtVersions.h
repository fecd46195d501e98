#pragma once
// What differs between the versions of the toolkit that Vantor is built with: nowhere else is its version asked for.

#include <QtCore/QtGlobal>
#include <QtWebEngineCore/QWebEnginePage>

namespace vantor::qtversions {

// Every power that a page asks for is refused. 6.8 has a value for each request, and deprecates the calls before it.
inline void refusePermissions(QWebEnginePage& page) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QObject::connect(&page, &QWebEnginePage::permissionRequested, &page,
                     [](const QWebEnginePermission& request) { request.deny(); });
#else
    QObject::connect(&page, &QWebEnginePage::featurePermissionRequested, &page,
                     [&page](const QUrl& origin, QWebEnginePage::Feature feature) {
                         page.setFeaturePermission(origin, feature, QWebEnginePage::PermissionDeniedByUser);
                     });
#endif
}

}  // namespace vantor::qtversions

#include "catalogue/UpdateHost.h"

#include <QtCore/QUrl>

namespace vantor {

bool isUpdateHost(const std::string& host) {
    const QUrl url(QString::fromStdString(host), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty() || host.ends_with('/')) return false;
    const bool here = url.host() == QLatin1String("127.0.0.1") || url.host() == QLatin1String("localhost");
    return url.scheme() == QLatin1String("https") || (here && url.scheme() == QLatin1String("http"));
}

}  // namespace vantor

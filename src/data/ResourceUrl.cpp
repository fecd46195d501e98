#include "data/ResourceUrl.h"

#include <QtCore/QUrl>

namespace vantor {

bool isValidUrl(const std::string& text) {
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    return url.isValid() && !url.scheme().isEmpty();
}

}  // namespace vantor

#include "feedback/FormEncoding.h"

#include <QtCore/QByteArray>

namespace vantor {

namespace {

std::string encoded(const std::string& text) {
    return QByteArray::fromStdString(text).toPercentEncoding("!$'()*+,/:?@").toStdString();
}

}  // namespace

std::string encodeQueryItems(const QueryItems& items) {
    std::string query;
    for (const auto& [name, value] : items) {
        if (!query.empty()) query += '&';
        query += encoded(name) + '=' + encoded(value);
    }
    return query;
}

}  // namespace vantor

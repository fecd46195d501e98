#include "accounts/AccountsJson.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringDecoder>
#include <optional>

namespace vantor {

namespace {

std::optional<QString> fromUtf8(const std::string& text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return decoder.hasError() ? std::nullopt : std::optional(std::move(decoded));
}

}  // namespace

Decoded<std::map<std::string, std::string>> decodeAccounts(std::string_view data) {
    const auto document = json::parse(data);
    if (!document.value) return {std::nullopt, document.error};
    if (!document.value->isObject()) return {};
    const QJsonObject object = document.value->toObject();
    std::map<std::string, std::string> accounts;
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (!member.value().isString()) return {};
        accounts.insert_or_assign(member.key().toStdString(), member.value().toString().toStdString());
    }
    return {std::move(accounts), {}};
}

Decoded<std::string> encodeAccounts(const std::map<std::string, std::string>& accounts) {
    QJsonObject object;
    for (const auto& [username, password] : accounts) {
        const auto name = fromUtf8(username);
        const auto value = fromUtf8(password);
        if (!name || !value) return {std::nullopt, "a user name or password is not UTF-8"};
        object.insert(*name, *value);
    }
    return {json::serialise(object), {}};
}

}  // namespace vantor

#include "browser/WebAddresses.h"

#include <QtCore/QByteArray>
#include <QtCore/QUrl>
#include <algorithm>

namespace vantor {

namespace {

bool isHexDigit(char letter) {
    return std::string_view("0123456789abcdefABCDEF").find(letter) != std::string_view::npos;
}

bool isAddressLetter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
           std::string_view("-._~:/?#@!$&'()*+,;=%").find(letter) != std::string_view::npos;
}

std::string percentEncoded(std::string_view text, const QByteArray& kept = {}) {
    return QByteArray(text.data(), static_cast<qsizetype>(text.size())).toPercentEncoding(kept).toStdString();
}

}  // namespace

bool isAddress(std::string_view text) {
    if (!std::all_of(text.begin(), text.end(), isAddressLetter)) return false;
    if (std::count(text.begin(), text.end(), '#') > 1) return false;
    for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1))
        if (at + 2 >= text.size() || !isHexDigit(text[at + 1]) || !isHexDigit(text[at + 2])) return false;
    const QUrl url(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), QUrl::StrictMode);
    return url.isValid() && !url.scheme().isEmpty() && !url.host().isEmpty();
}

std::string searchAddress(const WebHosts& hosts, const SearchTarget& target, std::string_view term) {
    const std::string prefix = hosts.*target.host + std::string(target.path);
    std::string words(term);
    std::replace(words.begin(), words.end(), ' ', '+');
    std::string address = prefix + words;
    return isAddress(address) ? address : prefix + percentEncoded(words, "+");
}

std::string gameUpdatesAddress(const WebHosts& hosts) { return hosts.wiki + "/wiki/Game_updates"; }

std::string wikiPageAddress(const WebHosts& hosts, std::string_view title) {
    std::string name(title);
    std::replace(name.begin(), name.end(), ' ', '_');
    return hosts.wiki + "/wiki/" + percentEncoded(name, "/:#(),'!");
}

std::string lookUpAddress(const WebHosts& hosts, std::string_view name) {
    return hosts.wiki + "/index.php?search=" + percentEncoded(name);
}

}  // namespace vantor

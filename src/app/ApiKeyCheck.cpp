#include "app/ApiKeyCheck.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "app/ApiRefusal.h"
#include "data/Decoder.h"
#include "data/ResourceUrl.h"
#include "data/WebApi.h"

namespace vantor {

// The account as every key shows it.
struct AccountName {
    std::string id;
    std::string name;
};

template <>
struct Fields<AccountName> {
    static constexpr auto table = std::tuple(Field{"id", &AccountName::id}, Field{"name", &AccountName::name});
};

// What a key may do, by the names that the game gives to permissions.
struct TokenInfo {
    std::vector<std::string> permissions;
};

template <>
struct Fields<TokenInfo> {
    static constexpr auto table = std::tuple(Field{"permissions", &TokenInfo::permissions});
};

namespace {

bool isHexDigit(char byte) { return std::string_view("0123456789abcdefABCDEF").find(byte) != std::string_view::npos; }

// What may stand in a query, and in a fragment after the first "#" (RFC 3986, 3.4 and 3.5). The toolkit's strict
// reading lets some bytes pass and would escape them.
bool isQuery(std::string_view text) {
    constexpr std::string_view others = "-._~!$&'()*+,;=:@/?";
    bool inFragment = false;
    for (std::size_t place = 0; place < text.size(); ++place) {
        const char byte = text[place];
        const bool letterOrDigit =
            (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
        if (letterOrDigit || others.find(byte) != std::string_view::npos) continue;
        if (byte == '#' && !inFragment) {
            inFragment = true;
        } else if (byte == '%' && place + 2 < text.size() && isHexDigit(text[place + 1]) &&
                   isHexDigit(text[place + 2])) {
            place += 2;
        } else {
            return false;
        }
    }
    return true;
}

std::string addressOf(const std::string& apiHost, std::string_view path, const std::string& key) {
    return apiHost + std::string(path) + "?access_token=" + key;
}

// The API leaves out what a permission would show, or says that one is required.
bool isOfARealKey(const std::string& body) {
    return decodeJson<AccountName>(body).value || keyRefusal(body) == KeyAnswer::lacksScope;
}

std::vector<std::string> missingOf(const TokenInfo& token) {
    std::vector<std::string> missing;
    for (const std::string_view needed : neededPermissions)
        if (std::ranges::find(token.permissions, needed) == token.permissions.end()) missing.emplace_back(needed);
    return missing;
}

}  // namespace

std::optional<std::string> ApiKeyCheck::address(const std::string& apiHost, const std::string& key) {
    if (!isQuery(key)) return std::nullopt;
    std::string url = addressOf(apiHost, "/v2/account", key);
    return isValidUrl(url) ? std::optional(std::move(url)) : std::nullopt;
}

bool ApiKeyCheck::check(const std::string& key, Told told) {
    auto url = address(needs_.apiHost, key);
    if (!url) return false;
    forget();
    ask(*std::move(url), [this, key, told = std::move(told)](const std::optional<std::string>& body) {
        if (!body || body->empty()) return tell(Verdict::noData, told);
        if (decodeJson<Account>(*body).value) return tell(Verdict::accepted, told);
        if (!isOfARealKey(*body)) return tell(Verdict::invalid, told);
        askPermissions(key, told);
    });
    return true;
}

void ApiKeyCheck::askPermissions(const std::string& key, const Told& told) {
    ask(addressOf(needs_.apiHost, "/v2/tokeninfo", key), [this, told](const std::optional<std::string>& body) {
        const auto token = decodeJson<TokenInfo>(body.value_or("")).value;
        missing_ = token ? missingOf(*token) : std::vector<std::string>();
        // A key with all of them whose account is not whole: it is the service that is at fault.
        tell(token && missing_.empty() ? Verdict::noData : Verdict::lacksPermission, told);
    });
}

void ApiKeyCheck::ask(std::string url, Answered answered) {
    UrlRequest request;
    request.url = std::move(url);
    needs_.session.dataTask(std::move(request),
                            [&mainThread = needs_.mainThread, mine = std::weak_ptr(newest_),
                             answered = std::move(answered)](const std::optional<std::string>& body) {
                                mainThread.post([mine, answered, body] {
                                    if (!mine.expired()) answered(body);
                                });
                            });
}

void ApiKeyCheck::tell(Verdict verdict, const Told& told) const {
    if (verdict == Verdict::noData) needs_.printLine("No account data");
    told(verdict);
}

}  // namespace vantor

#include "app/ApiKeyCheck.h"

#include <algorithm>
#include <string_view>

#include "data/Decoder.h"
#include "data/ResourceUrl.h"
#include "data/WebApi.h"

namespace vantor {

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

ApiKeyCheck::Verdict verdictOn(const std::optional<std::string>& body) {
    if (!body || body->empty()) return ApiKeyCheck::Verdict::noData;
    return decodeJson<Account>(*body).value ? ApiKeyCheck::Verdict::accepted : ApiKeyCheck::Verdict::invalid;
}

}  // namespace

std::optional<std::string> ApiKeyCheck::address(const std::string& apiHost, const std::string& key) {
    if (!isQuery(key)) return std::nullopt;
    std::string url = apiHost + "/v2/account?access_token=" + key;
    return isValidUrl(url) ? std::optional(std::move(url)) : std::nullopt;
}

bool ApiKeyCheck::check(const std::string& key, Told told) {
    auto url = address(needs_.apiHost, key);
    if (!url) return false;
    forget();
    UrlRequest request;
    request.url = *std::move(url);
    needs_.session.dataTask(std::move(request), [&mainThread = needs_.mainThread, mine = std::weak_ptr(newest_),
                                                 printLine = needs_.printLine,
                                                 told = std::move(told)](const std::optional<std::string>& body) {
        mainThread.post([mine, printLine, told, verdict = verdictOn(body)] {
            if (mine.expired()) return;
            if (verdict == Verdict::noData) printLine("No account data");
            told(verdict);
        });
    });
    return true;
}

}  // namespace vantor

#include "app/ApiRefusal.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

#include "data/Decoder.h"

namespace vantor {

// The web API's error object.
struct ApiError {
    std::string text;
};

template <>
struct Fields<ApiError> {
    static constexpr auto table = std::tuple(Field{"text", &ApiError::text});
};

std::optional<KeyAnswer> keyRefusal(std::string_view body) {
    // A progress list may have megabytes and begins otherwise.
    const auto first = std::ranges::find_if_not(body, [](unsigned char letter) { return std::isspace(letter) != 0; });
    if (first == body.end() || *first != '{') return std::nullopt;
    auto error = decodeJson<ApiError>(body).value;
    if (!error) return std::nullopt;
    std::ranges::transform(error->text, error->text.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    const auto says = [&](std::string_view words) { return error->text.find(words) != std::string::npos; };
    if (says("requires scope")) return KeyAnswer::lacksScope;
    if (says("invalid access token") || says("invalid key") || says("requires authentication"))
        return KeyAnswer::refused;
    return std::nullopt;
}

void ApiRefusal::dataTask(UrlRequest request, Completion completion) {
    session_.dataTask(std::move(request),
                      [this, completion = std::move(completion)](const std::optional<std::string>& body) {
                          // Before the loader's own handling, whose change of state is the moment to ask.
                          last_ = body ? keyRefusal(*body).value_or(KeyAnswer::accepted) : KeyAnswer::accepted;
                          completion(body);
                      });
}

void ApiRefusal::statusTask(UrlRequest request, StatusCompletion completion) {
    session_.statusTask(std::move(request), std::move(completion));
}

}  // namespace vantor

#pragma once
// A session that passes everything on and remembers whether the last answer was the web API's own refusal of the key.
// The loaders look at no status; the API's error object is the one thing that tells a refused key from a service that
// is away. Answers come on the session's queue; `last` from any thread.

#include <atomic>
#include <optional>
#include <string_view>

#include "platform/UrlSession.h"

namespace vantor {

enum class KeyAnswer { accepted, refused, lacksScope };

// Of one body: nothing for a body that is no error object of the API about the key.
[[nodiscard]] std::optional<KeyAnswer> keyRefusal(std::string_view body);

class ApiRefusal final : public UrlSession {
public:
    explicit ApiRefusal(UrlSession& session) : session_(session) {}

    void dataTask(UrlRequest request, Completion completion) override;
    void statusTask(UrlRequest request, StatusCompletion completion) override;

    // Accepted until something else is known.
    [[nodiscard]] KeyAnswer last() const { return last_; }

private:
    UrlSession& session_;
    std::atomic<KeyAnswer> last_{KeyAnswer::accepted};
};

}  // namespace vantor

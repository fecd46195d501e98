#pragma once
// HTTP data tasks. A task may be started from any thread; every completion runs on the one serial session queue.

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vantor {

struct UrlRequest {
    std::string method = "GET";
    std::string url;
    std::vector<std::pair<std::string, std::string>> headers;
    std::chrono::seconds timeout{60};  // of inactivity
    std::string body;

    bool operator==(const UrlRequest&) const = default;
};

class UrlSession {
public:
    // The body, whatever the HTTP status; nothing when the transfer failed or carried no byte.
    using Completion = std::function<void(std::optional<std::string> body)>;
    // The HTTP status alone; nothing when the transfer failed.
    using StatusCompletion = std::function<void(std::optional<int> status)>;

    virtual ~UrlSession() = default;
    virtual void dataTask(UrlRequest request, Completion completion) = 0;
    virtual void statusTask(UrlRequest request, StatusCompletion completion) = 0;
};

}  // namespace vantor

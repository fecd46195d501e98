#pragma once
// Files over HTTP, with their status: for what is asked for again and again and must not grow without end. A task may
// be started from any thread; every completion runs on the one serial session queue.

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace vantor {

struct DownloadRequest {
    std::string url;
    std::string etag{};                 // of what is held; sent as If-None-Match
    std::size_t atMost = 1024 * 1024;   // bytes as they come; no encoding is undone
    std::chrono::seconds deadline{60};  // for the whole, however slowly it drips

    bool operator==(const DownloadRequest&) const = default;
};

struct DownloadAnswer {
    int status = 0;
    std::string etag{};
    std::string retryAfter{};  // the header's text
    std::string body{};
};

class Download {
public:
    // Nothing when no whole answer came: no connection, too long, too slow, sent to another host.
    using Completion = std::function<void(std::optional<DownloadAnswer> answer)>;

    virtual ~Download() = default;
    // Sends nothing that tells one player from another: no cookie, no key, no language.
    virtual void get(DownloadRequest request, Completion completion) = 0;
};

}  // namespace vantor

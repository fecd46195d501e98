#pragma once
// When the maker's host is asked for a newer catalogue, and how. No timer runs for it: it is looked at when the player
// opens the overlay. On the session queue, but for the completions' way there.

#include <cstdint>
#include <functional>
#include <string>

#include "platform/Clock.h"
#include "platform/Defaults.h"
#include "platform/Download.h"

namespace vantor {

// Seconds from now until the moment of a Retry-After header, 0 where it says nothing.
[[nodiscard]] std::int64_t retryAfterSeconds(const std::string& header, Clock::Seconds now);

class UpdateFetch {
public:
    struct Needs {
        std::string host;  // empty: nothing is ever fetched
        Download* download = nullptr;
        const Defaults& defaults;
        const Clock& clock;
        std::function<double()> random;  // from 0 to below 1
        std::function<std::string()> etag;
        // Whether the body to this signature is wanted; says why not by itself.
        std::function<bool(const std::string& signature)> wants;
        std::function<void(const std::string& signature, const std::string& body, const std::string& etag)> offer;
        std::function<void(const std::string& line)> printLine;
    };

    explicit UpdateFetch(Needs needs);

    // Asks, if it is switched on, the last answer is six hours old and a failure has been waited out.
    void askIfDue();

private:
    void handleSignature(const std::optional<DownloadAnswer>& answer);
    void handleBody(const std::string& signature, const std::string& etag, const std::optional<DownloadAnswer>& answer);
    void answered();
    void failed(const std::optional<DownloadAnswer>& answer);
    [[nodiscard]] DownloadRequest request(const std::string& file) const;

    Needs needs_;
    bool asking_ = false;
    int failures_ = 0;
    Clock::Seconds last_ = 0;
    Clock::Seconds pause_ = 0;  // after `last_`; none before the first
};

}  // namespace vantor

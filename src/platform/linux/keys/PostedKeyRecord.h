#pragma once
// What Vantor posted and has not yet seen come back in the server's raw events. Main thread.

#include <chrono>
#include <cstdint>
#include <deque>

namespace vantor {

class PostedKeyRecord {
public:
    using Clock = std::chrono::steady_clock;
    // A post comes back within microseconds. This long after it a key can only be the player's.
    static constexpr std::chrono::seconds lifetime{2};

    void posted(std::uint8_t xKeycode, bool down, Clock::time_point now) { waiting_.push_back({xKeycode, down, now}); }
    // Whether the key seen is one that was posted; it then counts as seen.
    [[nodiscard]] bool claim(std::uint8_t xKeycode, bool down) {
        // The server reports in the order of posting, but a player's keys may come between.
        for (auto entry = waiting_.begin(); entry != waiting_.end(); ++entry) {
            if (entry->xKeycode != xKeycode || entry->down != down) continue;
            waiting_.erase(entry);
            return true;
        }
        return false;
    }
    // Only to be called when the stream has been read to its end: while Vantor types, what comes back waits unread.
    void expire(Clock::time_point now) {
        while (!waiting_.empty() && now - waiting_.front().at > lifetime) waiting_.pop_front();
    }
    // For the end of the connection that would have shown it.
    void clear() { waiting_.clear(); }
    [[nodiscard]] bool empty() const { return waiting_.empty(); }

private:
    struct Entry {
        std::uint8_t xKeycode;
        bool down;
        Clock::time_point at;
    };
    std::deque<Entry> waiting_;
};

}  // namespace vantor

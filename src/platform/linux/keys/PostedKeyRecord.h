#pragma once
// What Vantor posted and has not yet seen come back in the server's raw events. The typing thread posts, the main
// thread sees: each before the other's next step.

#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>

namespace vantor {

class PostedKeyRecord {
public:
    using Clock = std::chrono::steady_clock;
    // What the server has done comes back within microseconds. This long after it a key can only be the player's.
    static constexpr std::chrono::seconds lifetime{2};

    // Before it is sent: it may be back before the sender's next line.
    void posted(std::uint8_t xKeycode, bool down) {
        const std::lock_guard lock(mutex_);
        waiting_.push_back({xKeycode, down, std::nullopt});
    }
    // The server has answered since for all that was posted.
    void answered(Clock::time_point now) {
        const std::lock_guard lock(mutex_);
        for (Entry& each : waiting_)
            if (!each.doneBy) each.doneBy = now;
    }
    // Whether the key seen is one that was posted; it then counts as seen.
    [[nodiscard]] bool claim(std::uint8_t xKeycode, bool down) {
        const std::lock_guard lock(mutex_);
        // The server reports in the order of posting, but a player's keys may come between.
        for (auto entry = waiting_.begin(); entry != waiting_.end(); ++entry) {
            if (entry->xKeycode != xKeycode || entry->down != down) continue;
            waiting_.erase(entry);
            return true;
        }
        return false;
    }
    // Only to be called when the stream has been read to its end.
    void expire(Clock::time_point now) {
        const std::lock_guard lock(mutex_);
        while (!waiting_.empty() && waiting_.front().doneBy && now - *waiting_.front().doneBy > lifetime)
            waiting_.pop_front();
    }
    // For the end of the connection that would have shown it.
    void clear() {
        const std::lock_guard lock(mutex_);
        waiting_.clear();
    }
    [[nodiscard]] bool empty() const {
        const std::lock_guard lock(mutex_);
        return waiting_.empty();
    }

private:
    struct Entry {
        std::uint8_t xKeycode;
        bool down;
        std::optional<Clock::time_point> doneBy;
    };
    mutable std::mutex mutex_;
    std::deque<Entry> waiting_;
};

}  // namespace vantor

#pragma once
// What has to be undone in the X server if Vantor ends now: the server keeps what a dead client did to the keyboard. It
// is memory that Vantor shares with its guardian, so a note costs one store and no system call, and outlives the one
// who made it. Every note is made before the change and stays until the server has answered for its undoing: to release
// a key once more does no harm. One writer; the reader comes after its end.

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace vantor {

class PendingKeyboardCleanup {
public:
    // The player's, to be put back.
    struct Locks {
        std::uint8_t modifiers = 0;         // those of the eight real ones that were taken out
        std::optional<std::uint8_t> group;  // where another one was put in its place

        bool operator==(const Locks&) const = default;
    };

    // A window of the connection that posts. The server destroys it when it has done the last of that connection's
    // requests, and no sooner; to undo before that would be too early.
    void setSentinel(std::uint32_t window) { sentinel_ = window; }
    [[nodiscard]] std::uint32_t sentinel() const { return sentinel_; }

    void note(std::uint8_t key) { keys_[key / bits].fetch_or(bitOf(key)); }
    [[nodiscard]] bool mayBeDown(std::uint8_t key) const { return (keys_[key / bits] & bitOf(key)) != 0; }

    void note(const Locks& locks) {
        locks_ = locks.modifiers | (locks.group ? groupNoted | std::uint32_t{*locks.group} << 8 : 0U);
    }
    [[nodiscard]] Locks locks() const {
        const std::uint32_t noted = locks_;
        Locks locks;
        locks.modifiers = static_cast<std::uint8_t>(noted & 0xff);
        if (noted & groupNoted) locks.group = static_cast<std::uint8_t>(noted >> 8 & 0xff);
        return locks;
    }

    [[nodiscard]] bool hasKeys() const {
        for (const auto& each : keys_)
            if (each != 0) return true;
        return false;
    }
    void clear() {
        locks_ = 0;
        for (auto& each : keys_) each = 0;
    }
    [[nodiscard]] bool hasAny() const { return locks_ != 0 || hasKeys(); }

private:
    static constexpr std::size_t bits = 64;
    static constexpr std::uint32_t groupNoted = 1U << 16;
    [[nodiscard]] static constexpr std::uint64_t bitOf(std::uint8_t key) { return std::uint64_t{1} << key % bits; }

    static_assert(std::atomic<std::uint64_t>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free);
    std::atomic<std::uint32_t> sentinel_ = 0;
    std::atomic<std::uint32_t> locks_ = 0;
    std::array<std::atomic<std::uint64_t>, 4> keys_ = {};
};

}  // namespace vantor

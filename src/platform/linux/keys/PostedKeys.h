#pragma once
// The keys that Vantor has down: sends their presses and releases, and notes both for whoever must know of them. The
// typing thread.

#include <bitset>
#include <cstdint>
#include <vector>

#include "platform/linux/XConnection.h"
#include "platform/linux/keys/PendingKeyboardCleanup.h"
#include "platform/linux/keys/PostedKeyRecord.h"

namespace vantor {

class PostedKeys {
public:
    PostedKeys(const XConnection& connection, PostedKeyRecord& record) : connection_(connection), record_(record) {}

    // Where to note what was pressed, or null. It outlives the notes; who takes them erases them.
    void noteIn(PendingKeyboardCleanup* pending) { pending_ = pending; }
    // A release may also be of a key that the player holds. The flush is the caller's.
    void send(std::uint8_t xKeycode, bool down);
    void releaseAll();

    [[nodiscard]] const std::bitset<256>& down() const { return down_; }
    // The same, in the order of their presses.
    [[nodiscard]] const std::vector<std::uint8_t>& inOrder() const { return inOrder_; }

private:
    const XConnection& connection_;
    PostedKeyRecord& record_;
    PendingKeyboardCleanup* pending_ = nullptr;
    std::bitset<256> down_;
    std::vector<std::uint8_t> inOrder_;
};

}  // namespace vantor

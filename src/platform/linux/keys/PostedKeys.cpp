#include "platform/linux/keys/PostedKeys.h"

#include <xcb/xtest.h>

namespace vantor {

void PostedKeys::send(std::uint8_t xKeycode, bool down) {
    if (down && pending_) pending_->note(xKeycode);
    record_.posted(xKeycode, down);
    // The flags are not sent: here an event adds to what is held, and the modifier keys are posted themselves.
    xcb_test_fake_input(connection_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME,
                        connection_.root(), 0, 0, 0);
    if (down_[xKeycode] == down) return;
    down_[xKeycode] = down;
    if (down) {
        inOrder_.push_back(xKeycode);
    } else {
        std::erase(inOrder_, xKeycode);
    }
}

void PostedKeys::releaseAll() {
    for (std::size_t key = 0; down_.any() && key < down_.size(); ++key)
        if (down_[key]) send(static_cast<std::uint8_t>(key), false);
}

}  // namespace vantor

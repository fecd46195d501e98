#include "platform/linux/XTestKeyPoster.h"

#include <xcb/xtest.h>

#include "platform/linux/KeyCodes.h"

namespace vantor {

XTestKeyPoster::~XTestKeyPoster() {
    if (down_.none()) return;
    // The server keeps a dead client's keys down.
    for (std::size_t key = 0; key < down_.size(); ++key)
        if (down_[key]) send(static_cast<std::uint8_t>(key), false);
    xcb_flush(connection_.get());
}

void XTestKeyPoster::send(std::uint8_t xKeycode, bool down) {
    // The flags are not sent: here an event adds to what is held, and the modifier keys are posted themselves.
    xcb_test_fake_input(connection_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME,
                        connection_.root(), 0, 0, 0);
    record_.posted(xKeycode, down, PostedKeyRecord::Clock::now());
    down_[xKeycode] = down;
}

PostVerdict XTestKeyPoster::post(const PostedKey& key) {
    if (!connection_.hasTest()) return PostVerdict::unavailable;
    const auto xKeycode = xKeycodeOf(key.keyCode);
    if (!xKeycode) return PostVerdict::noSuchKey;
    send(*xKeycode, key.down);
    return xcb_flush(connection_.get()) > 0 ? PostVerdict::posted : PostVerdict::unavailable;
}

}  // namespace vantor

#include "platform/linux/XTestKeyPoster.h"

#include <xcb/xtest.h>

#include "platform/linux/KeyCodes.h"

namespace vantor {

PostVerdict XTestKeyPoster::post(const PostedKey& key) {
    if (!connection_.hasTest()) return PostVerdict::unavailable;
    const auto xKeycode = xKeycodeOf(key.keyCode);
    if (!xKeycode) return PostVerdict::noSuchKey;
    // The flags are not sent: here an event adds to what is held, and the modifier keys are posted themselves.
    xcb_test_fake_input(connection_.get(), key.down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, *xKeycode, XCB_CURRENT_TIME,
                        connection_.root(), 0, 0, 0);
    record_.posted(*xKeycode, key.down);
    return xcb_flush(connection_.get()) > 0 ? PostVerdict::posted : PostVerdict::unavailable;
}

}  // namespace vantor

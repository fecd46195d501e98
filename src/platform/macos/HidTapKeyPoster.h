#pragma once
// Posts key events where those of the hardware come in, so that the application in front receives them as if they had
// been typed. They carry their own flags: what the player holds adds nothing. The typing thread.

#include "platform/KeyPoster.h"
#include "platform/macos/KeyboardEvents.h"

namespace vantor {

class HidTapKeyPoster final : public KeyPoster {
public:
    explicit HidTapKeyPoster(KeyboardEvents& events) : events_(events) {}

    // The system tells nothing of what becomes of it; without the permission to press keys it is dropped.
    [[nodiscard]] PostVerdict post(const PostedKey& key) override;

private:
    KeyboardEvents& events_;
};

}  // namespace vantor

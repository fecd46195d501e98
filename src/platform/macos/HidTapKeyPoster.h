#pragma once
// Posts key events where those of the hardware come in, so that the application in front receives them as if they had
// been typed. They carry their own flags: what the player holds adds nothing. Main thread.

#include "platform/KeyPoster.h"
#include "platform/macos/KeyboardEvents.h"
#include "platform/macos/SharedWorkspace.h"

namespace vantor {

class HidTapKeyPoster final : public KeyPoster {
public:
    HidTapKeyPoster(KeyboardEvents& events, const SharedWorkspace& workspace)
        : events_(events), workspace_(workspace) {}

    // Nothing is posted where Vantor did not lose the focus in time, which a line says: a login is not to land in a
    // field of its own.
    [[nodiscard]] std::unique_ptr<Typing> beginTyping() override;
    // The system tells nothing of what becomes of it; without the permission to press keys it is dropped.
    [[nodiscard]] PostVerdict post(const PostedKey& key) override;

private:
    KeyboardEvents& events_;
    const SharedWorkspace& workspace_;
};

}  // namespace vantor

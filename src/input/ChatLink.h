#pragma once
// What a press on a chat link does: copy it, or with Shift held type it into the game's chat. Main thread.

#include <functional>
#include <string>

#include "input/ClipboardManager.h"
#include "platform/Defaults.h"
#include "platform/Pasteboard.h"

namespace vantor {

struct ChatLinkNeeds {
    ClipboardManager& clipboardManager;
    Pasteboard& pasteboard;
    Defaults& defaults;
};

// `shiftHeld`: what the press itself says. The key may have gone down while the game had the keyboard, where windows of
// ours do not hear of it. `show` is given the message to show: at once, or when the link has been typed; the first time
// that nothing but a default left the return key out, that says so.
void pressChatLink(const std::string& chatLink, const ChatLinkNeeds& needs, bool shiftHeld,
                   const std::function<void(const std::string& message)>& show);

}  // namespace vantor

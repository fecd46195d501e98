#include "input/ChatLink.h"

#include "data/SettingKeys.h"

namespace vantor {

std::string pressChatLink(const std::string& chatLink, const ChatLinkNeeds& needs, bool shiftHeld) {
    // The line feeds open the game's chat and send what stands in it. A copied link keeps them.
    const auto stored = needs.defaults.get<bool>(settings::enableChatLinkReturnKey);
    const bool withReturn = stored.value_or(false);
    const std::string text = withReturn ? "\n" + chatLink + "\n" : chatLink;
    if (shiftHeld || needs.clipboardManager.shiftPressed()) {
        std::string said = needs.clipboardManager.typeString(text);
        // The settings panel shows the switch on until it is touched.
        if (stored || needs.defaults.get<bool>(settings::explainedEnter).value_or(false)) return said;
        (void)needs.defaults.setValue(settings::explainedEnter, true);
        return "typed without ENTER; switch it in Settings";
    }
    needs.pasteboard.setText(text);
    return "copied to clipboard";
}

}  // namespace vantor

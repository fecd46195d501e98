#include "input/ChatLink.h"

#include "data/SettingKeys.h"

namespace vantor {

void pressChatLink(const std::string& chatLink, const ChatLinkNeeds& needs, bool shiftHeld,
                   const std::function<void(const std::string& message)>& show) {
    // The line feeds open the game's chat and send what stands in it. A copied link keeps them.
    const bool withReturn = needs.defaults.get<bool>(settings::enableChatLinkReturnKey).value_or(false);
    const std::string text = withReturn ? "\n" + chatLink + "\n" : chatLink;
    if (shiftHeld || needs.clipboardManager.shiftPressed())
        return needs.clipboardManager.typeString(text, [show](const Typed& typed) { show(statusOf(typed)); });
    needs.pasteboard.setText(text);
    show("copied to clipboard");
}

}  // namespace vantor

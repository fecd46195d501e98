#include "input/ChatLink.h"

#include "data/SettingKeys.h"

namespace vantor {

void pressChatLink(const std::string& chatLink, const ChatLinkNeeds& needs, bool shiftHeld,
                   const std::function<void(const std::string& message)>& show) {
    // The line feeds open the game's chat and send what stands in it. A copied link keeps them.
    const auto stored = needs.defaults.get<bool>(settings::enableChatLinkReturnKey);
    const bool withReturn = stored.value_or(false);
    const std::string text = withReturn ? "\n" + chatLink + "\n" : chatLink;
    if (shiftHeld || needs.clipboardManager.shiftPressed()) {
        // The settings panel shows the switch on until it is touched.
        const bool explains = !stored && !needs.defaults.get<bool>(settings::explainedEnter).value_or(false);
        return needs.clipboardManager.typeString(text,
                                                 [show, explains, &defaults = needs.defaults](const Typed& typed) {
                                                     if (!explains || typed.end != Typed::End::whole)
                                                         return show(statusOf(typed));
                                                     (void)defaults.setValue(settings::explainedEnter, true);
                                                     show("typed without ENTER; switch it in Settings");
                                                 });
    }
    needs.pasteboard.setText(text);
    show("copied to clipboard");
}

}  // namespace vantor

#include "app/SystemCapability.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "app/EnabledApplications.h"
#include "platform/Workspace.h"

namespace vantor {

namespace {

struct PlainWords {
    std::string_view name;
    std::string_view what;
    std::string_view works;
};

constexpr std::array plainWords{
    PlainWords{"display", "Windows over the game", "can be shown"},
    PlainWords{"raw keys", "Hotkeys while you play", "are heard"},
    PlainWords{"posting", "Typing into the game", "works"},
    PlainWords{"layout", "Your keyboard's layout", "is known"},
    PlainWords{"frontmost application", "The game in front", "is recognised"},
    PlainWords{"clicks", "Clicks into the overlay",
               "arrive; while a full-screen game holds the pointer, open it with the hotkey"},
    PlainWords{"tray", "Status bar", "is there"},
    PlainWords{"keyring", "Keyring for account logins", "is there"},
    PlainWords{"fonts", "Coloured emotes", "can be drawn"},
    PlainWords{"guardian", "Tidying up after a crash", "is ready"},
    PlainWords{"web engine", "Web pages", "can be shown"},
    PlainWords{"web sandbox", "Pages kept apart from your files", "yes"},
};

}  // namespace

SystemCapability plainCapability(const std::string& name, bool present, const std::string& advice) {
    const auto* words = std::ranges::find(plainWords, name, &PlainWords::name);
    if (words == plainWords.end()) return {name, present, advice};
    return {std::string(words->what), present, present ? std::string(words->works) : advice};
}

SystemCapability clicksCapability(SystemCapability machine, Defaults& defaults) {
    if (!machine.have || isApplicationEnabled(defaults, ownIdentifier)) return machine;
    return {machine.what, false,
            "do not arrive while a full-screen game holds the pointer: Vantor itself is not among the enabled "
            "applications, and its windows would hide if it took the focus",
            [&defaults] {
                if (!isApplicationEnabled(defaults, ownIdentifier)) toggleApplication(defaults, ownIdentifier);
            }};
}

SystemCapability keyringCapability(const AccountsCredentials& credentials) {
    using Storage = AccountsCredentials::Storage;
    const std::string what = plainCapability("keyring", true, {}).what;
    switch (credentials.storage()) {
        case Storage::reading:
            return {what, true, "is being asked for your accounts"};
        case Storage::known:
            if (credentials.stored()) return {what, true, "holds your accounts"};
            return {what, false, "the last change of your accounts could not be stored: it is lost when Vantor ends"};
        case Storage::locked:
            return {what, false, "locked: your accounts are shown after you unlock it and start Vantor again"};
        case Storage::refused:
            return {what, false, "it stays locked: your accounts are kept until Vantor ends"};
        case Storage::unavailable:
            break;
    }
    return {what, false, "none answers: accounts are kept until Vantor ends; install one such as gnome-keyring"};
}

}  // namespace vantor

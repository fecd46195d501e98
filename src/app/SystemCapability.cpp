#include "app/SystemCapability.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "app/EnabledApplications.h"
#include "platform/Workspace.h"

namespace vantor {

namespace {

struct Words {
    CapabilityKind kind;
    std::string_view name;
    std::string_view what;
    std::string_view works;
};

constexpr std::array words{
    Words{CapabilityKind::display, "display", "Windows over the game", "can be shown"},
    Words{CapabilityKind::rawKeys, "raw keys", "Hotkeys while you play", "are heard"},
    Words{CapabilityKind::posting, "posting", "Typing into the game", "works"},
    Words{CapabilityKind::layout, "layout", "Your keyboard's layout", "is known"},
    Words{CapabilityKind::frontmostApplication, "frontmost application", "The game in front", "is recognised"},
    Words{CapabilityKind::clicks, "clicks", "Clicks into the overlay",
          "arrive; while a full-screen game holds the pointer, open it with the hotkey"},
    Words{CapabilityKind::tray, "tray", "Status bar", "is there"},
    Words{CapabilityKind::keyring, "keyring", "Keyring for account logins", "is there"},
    Words{CapabilityKind::fonts, "fonts", "Coloured emotes", "can be drawn"},
    Words{CapabilityKind::guardian, "guardian", "Tidying up after a crash", "is ready"},
    Words{CapabilityKind::webEngine, "web engine", "Web pages", "can be shown"},
    Words{CapabilityKind::webSandbox, "web sandbox", "Pages kept apart from your files", "yes"},
};

const Words& wordsOf(CapabilityKind kind) { return *std::ranges::find(words, kind, &Words::kind); }

}  // namespace

std::string capabilityName(CapabilityKind kind) { return std::string(wordsOf(kind).name); }

SystemCapability plainCapability(const Capability& capability) {
    const Words& found = wordsOf(capability.kind);
    return {std::string(found.what), capability.present,
            capability.present ? std::string(found.works) : capability.advice};
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
    const std::string what(wordsOf(CapabilityKind::keyring).what);
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

std::vector<SystemCapability> systemCapabilities(const std::vector<Capability>& found,
                                                 const AccountsCredentials& credentials, Defaults& defaults,
                                                 const std::function<std::function<void()>(CapabilityKind)>& question) {
    std::vector<SystemCapability> capabilities;
    for (const Capability& each : found) {
        capabilities.push_back(each.kind == CapabilityKind::keyring ? keyringCapability(credentials)
                                                                    : plainCapability(each));
        capabilities.back().ask = question(each.kind);
        if (each.kind == CapabilityKind::clicks)
            capabilities.back() = clicksCapability(std::move(capabilities.back()), defaults);
    }
    return capabilities;
}

}  // namespace vantor

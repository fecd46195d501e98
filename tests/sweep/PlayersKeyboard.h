#pragma once
// The player's side of the keyboard: which layouts it has, what is locked, which keys a hand holds. One thread.

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/XConnection.h"
#include "platform/linux/keys/XkbHandles.h"
#include "sweep/DeviceKeys.h"
#include "sweep/NestedServer.h"

namespace vantor::sweep {

class PlayersKeyboard {
public:
    struct Condition {
        unsigned locked = 0;  // masks of the eight real modifiers
        unsigned latched = 0;
        unsigned held = 0;
        unsigned group = 0;
        std::bitset<256> down;

        bool operator==(const Condition&) const = default;
        [[nodiscard]] std::string text() const;
    };
    // The keyboard of the test extension, and the nested server's.
    enum class Device { own, other };

    // In the server that DISPLAY names, which is the nested one.
    explicit PlayersKeyboard(NestedServer& nested) : nested_(nested) {}

    // Comma-separated lists, one item a group, and an option or none. False when the machine cannot load them. Nothing
    // is held or locked then, and the first group is on.
    [[nodiscard]] bool load(const std::string& layouts, const std::string& variants, const std::string& option);
    void lock(unsigned modifiers);
    void lockGroup(unsigned group);
    // False when the server does not show the key within seconds.
    [[nodiscard]] bool press(Device device, std::uint8_t xKeycode, bool down);
    // Takes the hand off whatever is down, and every lock off.
    void letGo();

    [[nodiscard]] Condition condition() const;
    // The first key of a real keyboard that gives this symbol with nothing held. Keymaps also have keys that no
    // keyboard has.
    [[nodiscard]] std::optional<std::uint8_t> keyOf(xkb_keysym_t symbol) const;
    // The real modifiers behind a name such as NumLock.
    [[nodiscard]] unsigned maskOf(const char* modifier) const;

private:
    NestedServer& nested_;
    XConnection server_;
    DeviceKeys other_{server_, "Xephyr"};
    XkbKeymap keymap_;
};

}  // namespace vantor::sweep

#pragma once
// Keeps the keyboard neutral while Vantor types, and gives it back at the end. Posted events add to what the player
// holds, latches and locks: so held modifiers are released and never pressed again, locks are taken out and put back,
// and the group is the one that the next key is meant in. The typing thread.

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/keys/KeyEffects.h"
#include "platform/linux/keys/KeyboardWatch.h"
#include "platform/linux/keys/PendingKeyboardCleanup.h"
#include "platform/linux/keys/PostedKeys.h"

namespace vantor {

class NeutralKeyboard {
public:
    // The effects are the learned keymap's, the group is the first key's. Notes in the pending before it changes
    // anything.
    NeutralKeyboard(const XConnection& connection, PostedKeys& keys, PendingKeyboardCleanup& pending,
                    const KeyEffects& effects, std::uint8_t group);
    // Puts the player's locks and group back, with what the player has changed since.
    ~NeutralKeyboard();
    NeutralKeyboard(const NeutralKeyboard&) = delete;
    NeutralKeyboard& operator=(const NeutralKeyboard&) = delete;

    // Before each press, in its group: undoes what the player has done meanwhile. Costs a round trip only if there is
    // something, or the group is another one.
    void prepare(std::uint8_t xKeycode, std::uint8_t group);
    [[nodiscard]] std::uint8_t group() const { return group_; }

private:
    // What could not be made neutral, and what Vantor held meanwhile.
    struct Irreducible {
        KeyboardState state;
        std::vector<std::uint8_t> own;

        bool operator==(const Irreducible&) const = default;
    };

    [[nodiscard]] bool isNeutral(const KeyboardState& state) const;
    // One round trip, for the state and for the player's keys.
    [[nodiscard]] bool look(KeyboardState& state);
    void switchTo(std::uint8_t group);
    void neutralise();
    void pressOwnAgain();
    [[nodiscard]] std::vector<std::uint8_t> modifierKeysAmong(std::vector<std::uint8_t> keys) const;
    void releaseMistaken(KeyboardState& state);
    void release(const std::bitset<256>& keys);
    void takeLocks(const KeyboardState& state);
    void countLocks(const KeyboardState& state);

    const XConnection& connection_;
    PostedKeys& keys_;
    PendingKeyboardCleanup& debt_;
    const KeyEffects& effects_;
    std::uint8_t group_;
    KeyboardWatch watch_;
    PendingKeyboardCleanup::Locks locks_;     // the player's
    std::vector<std::uint8_t> lastOwn_;       // modifiers that Vantor held at its last press
    std::bitset<256> playersKeys_;            // held when it was last asked, and not released since
    std::optional<Irreducible> irreducible_;  // not tried at every key
};

}  // namespace vantor

#include "platform/linux/NeutralKeyboard.h"

#include <algorithm>

#include "platform/linux/KeyboardUndo.h"

namespace vantor {
namespace {

// The player's hand may come between two rounds.
constexpr int roundLimit = 5;
// From then on a modifier is held by a key that the learned layout knows nothing of.
constexpr int desperateRound = 3;

}  // namespace

NeutralKeyboard::NeutralKeyboard(const XConnection& connection, PostedKeys& keys, KeyboardDebt& debt,
                                 const KeyEffects& effects, std::uint8_t group)
    : connection_(connection), keys_(keys), debt_(debt), effects_(effects), group_(group) {
    neutralise();
}

NeutralKeyboard::~NeutralKeyboard() {
    keys_.releaseAll();
    KeyboardState now;
    if (!readKeyboard(connection_, now)) return;
    countLocks(now);
    const bool asThePlayerHasIt =
        now.latched == 0 && now.locked == locks_.modifiers && now.lockedGroup == locks_.group.value_or(now.lockedGroup);
    if (!asThePlayerHasIt) {
        lockModifiers(connection_.get(), 0xff, locks_.modifiers, locks_.group);
        if (!readKeyboard(connection_, now)) return;
    }
    // Only what the server has answered for is done: of a client that dies it may drop what it has not read yet.
    debt_.clear();
}

std::uint8_t NeutralKeyboard::ownModifiers() const {
    if (keys_.down().none()) return 0;
    unsigned modifiers = 0;
    for (std::size_t key = 0; key < keys_.down().size(); ++key)
        if (keys_.down()[key]) modifiers |= effects_.modifiers[key];
    return static_cast<std::uint8_t>(modifiers);
}

bool NeutralKeyboard::isNeutral(const KeyboardState& state) const {
    return state.held == ownModifiers() && state.latched == 0 && state.locked == 0 && state.group == group_;
}

void NeutralKeyboard::prepare(std::uint8_t xKeycode) {
    const KeyboardState& newest = watch_.newest();
    if (!isNeutral(newest) && newest != irreducible_) neutralise();
    // A key that is down cannot go down: the press would be lost.
    if (playersKeys_[xKeycode]) {
        keys_.send(xKeycode, false);
        playersKeys_.reset(xKeycode);
    }
}

void NeutralKeyboard::neutralise() {
    KeyboardState state;
    for (int round = 0; round < roundLimit; ++round) {
        const auto asked = xcb_query_keymap(connection_.get());
        if (!readKeyboard(connection_, state)) return;
        const XReply<xcb_query_keymap_reply_t> down(xcb_query_keymap_reply(connection_.get(), asked, nullptr));
        for (std::size_t key = 0; down && key < playersKeys_.size(); ++key)
            playersKeys_[key] = (down->keys[key / 8] >> key % 8 & 1) != 0 && !keys_.down()[key];
        if (isNeutral(state)) return;
        if (down && pressLostAgain(*down)) continue;
        // Keys first: the release of a lock's key may unlock it.
        const bool byAStranger = round >= desperateRound && state.held != ownModifiers();
        const auto holding = byAStranger ? playersKeys_ : playersKeys_ & effects_.choosers;
        if (holding.any()) {
            release(holding);
        } else {
            takeLocks(state);
        }
    }
    irreducible_ = state;
}

// The hand has let go of a modifier that Vantor holds as well, which the server takes as up for all devices. Only what
// goes up on Vantor's device can go down there again.
bool NeutralKeyboard::pressLostAgain(const xcb_query_keymap_reply_t& down) {
    bool any = false;
    for (std::size_t key = 0; key < keys_.down().size(); ++key) {
        const bool isDown = (down.keys[key / 8] >> key % 8 & 1) != 0;
        if (!keys_.down()[key] || isDown || effects_.modifiers[key] == 0) continue;
        keys_.send(static_cast<std::uint8_t>(key), false);
        keys_.send(static_cast<std::uint8_t>(key), true);
        any = true;
    }
    return any;
}

void NeutralKeyboard::release(const std::bitset<256>& keys) {
    for (std::size_t key = 0; key < keys.size(); ++key)
        if (keys[key]) keys_.send(static_cast<std::uint8_t>(key), false);
}

void NeutralKeyboard::takeLocks(const KeyboardState& state) {
    countLocks(state);
    debt_.note(locks_);
    lockModifiers(connection_.get(), 0xff, 0, group_);
}

void NeutralKeyboard::countLocks(const KeyboardState& state) {
    // What is locked beside the neutral state was toggled by the player, who means it of the state that was taken out.
    locks_.modifiers ^= state.locked;
    if (state.lockedGroup == group_) return;
    const int groups = std::max(effects_.groups, std::uint8_t{1});
    const int moved = state.lockedGroup - group_;
    locks_.group = static_cast<std::uint8_t>((locks_.group.value_or(group_) + moved + groups) % groups);
}

}  // namespace vantor

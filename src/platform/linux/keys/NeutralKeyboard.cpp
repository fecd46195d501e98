#include "platform/linux/keys/NeutralKeyboard.h"

#include <algorithm>

#include "platform/linux/keys/KeyboardUndo.h"

namespace vantor {
namespace {

// The player's hand may come between two rounds.
constexpr int roundLimit = 5;
// From then on a modifier is held by a key that the learned layout knows nothing of.
constexpr int desperateRound = 3;

}  // namespace

NeutralKeyboard::NeutralKeyboard(const XConnection& connection, PostedKeys& keys, PendingKeyboardCleanup& pending,
                                 const KeyEffects& effects, std::uint8_t group)
    : connection_(connection), keys_(keys), debt_(pending), effects_(effects), group_(group) {
    neutralise();
}

NeutralKeyboard::~NeutralKeyboard() {
    keys_.releaseAll();
    KeyboardState now;
    if (!look(now)) return;
    releaseMistaken(now);
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

bool NeutralKeyboard::isNeutral(const KeyboardState& state) const {
    const auto own = effects_.holding(keys_.inOrder(), group_);
    return state.held == own.modifiers && state.latched == 0 && state.locked == 0 && state.group == own.group &&
           state.lockedGroup == group_;
}

void NeutralKeyboard::prepare(std::uint8_t xKeycode, std::uint8_t group) {
    if (group != group_) switchTo(group);
    const KeyboardState& newest = watch_.newest();
    if (!isNeutral(newest) && irreducible_ != Irreducible{newest, keys_.inOrder()}) neutralise();
    lastOwn_ = modifierKeysAmong(keys_.inOrder());
    if (effects_.modifierKeys()[xKeycode]) lastOwn_.push_back(xKeycode);
    // A key that is down cannot go down: the press would be lost.
    if (playersKeys_[xKeycode]) {
        keys_.send(xKeycode, false);
        playersKeys_.reset(xKeycode);
    }
}

std::vector<std::uint8_t> NeutralKeyboard::modifierKeysAmong(std::vector<std::uint8_t> keys) const {
    std::erase_if(keys, [this](std::uint8_t key) { return !effects_.modifierKeys()[key]; });
    return keys;
}

bool NeutralKeyboard::look(KeyboardState& state) {
    const auto asked = xcb_query_keymap(connection_.get());
    const bool answered = readKeyboard(connection_, state);
    const XReply<xcb_query_keymap_reply_t> down(xcb_query_keymap_reply(connection_.get(), asked, nullptr));
    for (std::size_t key = 0; down && key < playersKeys_.size(); ++key)
        playersKeys_[key] = (down->keys[key / 8] >> key % 8 & 1) != 0 && !keys_.down()[key];
    return answered;
}

void NeutralKeyboard::switchTo(std::uint8_t group) {
    // What the player has changed is counted from the group that was in its place until now.
    KeyboardState now;
    if (!look(now)) return;
    countLocks(now);
    locks_.group = locks_.group.value_or(group_);
    group_ = group;
    debt_.note(locks_);
    lockModifiers(connection_.get(), 0xff, 0, group_);
}

void NeutralKeyboard::neutralise() {
    KeyboardState state;
    for (int round = 0; round < roundLimit; ++round) {
        if (!look(state)) return;
        if (isNeutral(state)) return;
        // Keys first: the release of a lock's key may unlock it, that of a latch's key latches.
        const bool byAStranger =
            round >= desperateRound && state.held != effects_.holding(keys_.inOrder(), group_).modifiers;
        const auto holding = byAStranger ? playersKeys_ : playersKeys_ & effects_.modifierKeys();
        if (holding.any()) {
            release(holding);
        } else if (state.latched != 0 || state.locked != 0 || state.lockedGroup != group_) {
            takeLocks(state);
        } else {
            pressOwnAgain();
        }
    }
    irreducible_ = Irreducible{state, keys_.inOrder()};
}

// A modifier that Vantor holds may be up, since the hand has let go of the same one, which the server takes as up for
// all devices; or it may be another one than it should, since it went down beside one that the hand held.
void NeutralKeyboard::pressOwnAgain() {
    const auto own = modifierKeysAmong(keys_.inOrder());
    for (auto key = own.rbegin(); key != own.rend(); ++key) keys_.send(*key, false);
    // A latch among them now waits for a key. The request takes it out together with what waits in the server.
    lockModifiers(connection_.get(), 0, 0, std::nullopt);
    for (const auto key : own) keys_.send(key, true);
}

// At the end: what the hand pressed beside one of Vantor's modifiers may be another one than it would be alone. Let go
// later, a latch would wait for a key of the player's.
void NeutralKeyboard::releaseMistaken(KeyboardState& state) {
    std::bitset<256> mistaken;
    for (; !lastOwn_.empty(); lastOwn_.pop_back())  // the last pressed goes up first
        for (std::size_t key = 0; key < playersKeys_.size(); ++key)
            if (playersKeys_[key] && effects_.modifierKeys()[key] &&
                effects_.differsBeside(lastOwn_, static_cast<std::uint8_t>(key), group_))
                mistaken.set(key);
    if (mistaken.none()) return;
    release(mistaken);
    static_cast<void>(readKeyboard(connection_, state));
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
    const int groups = std::max(effects_.groups(), std::uint8_t{1});
    const int moved = state.lockedGroup - group_;
    locks_.group = static_cast<std::uint8_t>((locks_.group.value_or(group_) + moved + groups) % groups);
}

}  // namespace vantor

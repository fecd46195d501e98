#include "sweep/PlayersKeyboard.h"

#include <xcb/xtest.h>

// The header names a member `explicit`, which C++ reserves.
#define explicit explicitMember
#include <xcb/xkb.h>
#undef explicit

#include <QtCore/QDeadlineTimer>
#include <QtCore/QProcess>

#include "platform/linux/keys/KeyCodes.h"

namespace vantor::sweep {
namespace {

constexpr unsigned everyModifier = 0xff;

}  // namespace

std::string PlayersKeyboard::Condition::text() const {
    std::string out = "locked " + std::to_string(locked) + " latched " + std::to_string(latched) + " held " +
                      std::to_string(held) + " group " + std::to_string(group) + " keys";
    for (std::size_t key = 0; key < down.size(); ++key)
        if (down[key]) out += ' ' + std::to_string(key);
    return out;
}

bool PlayersKeyboard::load(const std::string& layouts, const std::string& variants, const std::string& option) {
    letGo();
    QProcess loader;
    loader.start(QStringLiteral("setxkbmap"),
                 {QStringLiteral("-rules"), QStringLiteral("evdev"), QStringLiteral("-model"), QStringLiteral("pc105"),
                  QStringLiteral("-layout"), QString::fromStdString(layouts), QStringLiteral("-variant"),
                  QString::fromStdString(variants), QStringLiteral("-option"), QString(), QStringLiteral("-option"),
                  QString::fromStdString(option)});
    if (!loader.waitForFinished(20000) || loader.exitStatus() != QProcess::NormalExit || loader.exitCode() != 0)
        return false;
    keymap_ = coreKeymap(server_);
    return keymap_ != nullptr;
}

void PlayersKeyboard::lock(unsigned modifiers) {
    const auto mask = static_cast<std::uint8_t>(modifiers);
    xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, mask, mask, 0, 0, 0, 0, 0);
    (void)condition();
}

void PlayersKeyboard::lockGroup(unsigned group) {
    xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, static_cast<std::uint8_t>(group), 0, 0,
                             0);
    (void)condition();
}

bool PlayersKeyboard::press(Device device, std::uint8_t xKeycode, bool down) {
    if (device == Device::own) {
        xcb_test_fake_input(server_.get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, xKeycode, XCB_CURRENT_TIME,
                            server_.root(), 0, 0, 0);
        return condition().down[xKeycode] == down;
    }
    nested_.press(xKeycode, down);
    const QDeadlineTimer deadline(5000);
    while (other_.down()[xKeycode] != down)
        if (deadline.hasExpired()) return false;
    // What the server has to say about it to others is on its way before its next answer.
    (void)condition();
    return true;
}

void PlayersKeyboard::letGo() {
    const auto held = other_.down();
    const auto down = condition().down;
    for (std::size_t key = 0; key < down.size(); ++key) {
        if (held[key]) (void)press(Device::other, static_cast<std::uint8_t>(key), false);
        if (!down[key]) continue;
        xcb_test_fake_input(server_.get(), XCB_KEY_RELEASE, static_cast<std::uint8_t>(key), XCB_CURRENT_TIME,
                            server_.root(), 0, 0, 0);
    }
    xcb_xkb_latch_lock_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD, everyModifier, 0, 1, 0, everyModifier, 1, 0);
    (void)condition();
}

PlayersKeyboard::Condition PlayersKeyboard::condition() const {
    Condition condition;
    const auto state = xcb_xkb_get_state(server_.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto keys = xcb_query_keymap(server_.get());
    if (const XReply<xcb_xkb_get_state_reply_t> reply{xcb_xkb_get_state_reply(server_.get(), state, nullptr)}) {
        condition.locked = reply->lockedMods;
        condition.latched = reply->latchedMods;
        condition.held = reply->baseMods;
        condition.group = reply->lockedGroup;
    }
    if (const XReply<xcb_query_keymap_reply_t> reply{xcb_query_keymap_reply(server_.get(), keys, nullptr)})
        for (std::size_t key = 0; key < condition.down.size(); ++key)
            condition.down[key] = reply->keys[key / 8] >> key % 8 & 1;
    return condition;
}

std::optional<std::uint8_t> PlayersKeyboard::keyOf(xkb_keysym_t symbol) const {
    const XkbState state(xkb_state_new(keymap_.get()));
    const auto first = xkb_keymap_min_keycode(keymap_.get());
    const auto last = std::min<xkb_keycode_t>(xkb_keymap_max_keycode(keymap_.get()), 255);
    for (xkb_keycode_t key = first; key <= last; ++key)
        if (keyCodeOfX(key) && xkb_state_key_get_one_sym(state.get(), key) == symbol)
            return static_cast<std::uint8_t>(key);
    return std::nullopt;
}

unsigned PlayersKeyboard::maskOf(const char* modifier) const {
    const XkbState state(xkb_state_new(keymap_.get()));
    const auto index = xkb_keymap_mod_get_index(keymap_.get(), modifier);
    if (index == XKB_MOD_INVALID) return 0;
    xkb_state_update_mask(state.get(), xkb_mod_mask_t{1} << index, 0, 0, 0, 0, 0);
    return xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE) & everyModifier;
}

}  // namespace vantor::sweep

#include "sweep/Sweep.h"

#include <QtCore/QString>
#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

#include "platform/linux/keys/KeyCodes.h"
#include "sweep/Samples.h"
#include "sweep/Typist.h"

namespace vantor::sweep {

enum class Groups { one, second, switched };  // one group; learned in the second; learned in the first, then switched
enum class Hand { none, own, other };         // on the keyboard of the test extension, and on the nested server's

struct State {
    const char* name;
    Groups groups = Groups::one;
    // A key that is held, by the symbol that it gives.
    Hand hand = Hand::none;
    xkb_keysym_t held = XKB_KEY_NoSymbol;
    // Whether it is held before the text begins, or goes down and up in the middle of it.
    bool midway = false;
    // A modifier that is locked.
    const char* locked = nullptr;
};

namespace {

constexpr std::array states = {
    State{"plain"},
    State{"shift-own", Groups::one, Hand::own, XKB_KEY_Shift_L},
    State{"control-own", Groups::one, Hand::own, XKB_KEY_Control_L},
    State{"altgr-own", Groups::one, Hand::own, XKB_KEY_ISO_Level3_Shift},
    State{"level5-own", Groups::one, Hand::own, XKB_KEY_ISO_Level5_Shift},
    State{"shift-other", Groups::one, Hand::other, XKB_KEY_Shift_L},
    State{"control-other", Groups::one, Hand::other, XKB_KEY_Control_L},
    State{"altgr-other", Groups::one, Hand::other, XKB_KEY_ISO_Level3_Shift},
    State{"shift-midway", Groups::one, Hand::other, XKB_KEY_Shift_L, true},
    State{"control-midway", Groups::one, Hand::other, XKB_KEY_Control_L, true},
    State{"altgr-midway", Groups::one, Hand::other, XKB_KEY_ISO_Level3_Shift, true},
    State{"caps", Groups::one, Hand::none, XKB_KEY_NoSymbol, false, XKB_MOD_NAME_CAPS},
    State{"num", Groups::one, Hand::none, XKB_KEY_NoSymbol, false, XKB_MOD_NAME_NUM},
    State{"group2", Groups::second},
    State{"switched", Groups::switched},
};
constexpr std::size_t namedFailures = 12;
constexpr const char* notApplicable = "no such key";
constexpr unsigned waitsBetweenReads = 32;

// The first key of a real keyboard that gives this symbol with nothing held. Keymaps also have keys that no keyboard
// has.
std::optional<std::uint8_t> keyOf(const XkbKeymap& keymap, xkb_keysym_t symbol) {
    const XkbState state(xkb_state_new(keymap.get()));
    for (unsigned key = xkb_keymap_min_keycode(keymap.get()); key <= 255; ++key)
        if (keyCodeOfX(key) && xkb_state_key_get_one_sym(state.get(), key) == symbol)
            return static_cast<std::uint8_t>(key);
    return std::nullopt;
}

// The real modifiers behind a name such as NumLock.
std::uint8_t maskOf(const XkbKeymap& keymap, const char* modifier) {
    const XkbState state(xkb_state_new(keymap.get()));
    const auto index = xkb_keymap_mod_get_index(keymap.get(), modifier);
    if (index == XKB_MOD_INVALID) return 0;
    xkb_state_update_mask(state.get(), xkb_mod_mask_t{1} << index, 0, 0, 0, 0, 0);
    return static_cast<std::uint8_t>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE) & 0xff);
}

// Where two texts part, with the code point on each side. Empty for equal ones.
std::string difference(const std::string& expected, const std::string& arrived) {
    const auto wanted = QString::fromStdString(expected).toUcs4();
    const auto got = QString::fromStdString(arrived).toUcs4();
    const auto [left, right] = std::mismatch(wanted.begin(), wanted.end(), got.begin(), got.end());
    if (left == wanted.end() && right == got.end()) return {};
    const auto named = [](auto at, auto end) {
        return at == end ? QStringLiteral("the end") : QStringLiteral("U+%1").arg(*at, 4, 16, QLatin1Char('0'));
    };
    return QStringLiteral("%1 of %2: %3 came as %4")
        .arg(left - wanted.begin())
        .arg(wanted.size())
        .arg(named(left, wanted.end()), named(right, got.end()))
        .toStdString();
}

}  // namespace

void Sweep::run(const LayoutName& layout) {
    std::optional<Groups> loaded;
    std::optional<Typist> typist;
    for (const State& state : states) {
        Row& row = rows_[state.name];
        // The list also names the layout that players may write themselves; there is nothing to load until they do.
        if (!layout.isInstalled()) {
            ++row.notApplicable;
            continue;
        }
        if (loaded != state.groups) {
            typist.reset();
            if (load(layout, state)) typist.emplace(*this);
            loaded = state.groups;
        }
        std::string why = typist ? "" : "does not load";
        for (unsigned done = 0; why.empty() && done < (state.midway ? handMoments_ : 1); ++done)
            why = runState(*typist, state);
        if (why == notApplicable) {
            ++row.notApplicable;
        } else if (why.empty()) {
            ++row.exact;
        } else {
            row.failures.push_back(layout.text() + ": " + why);
        }
    }
}

bool Sweep::load(const LayoutName& layout, const State& state) {
    letGo();
    // The companion is as unlike the layout as can be.
    const std::string companion = layout.layout == "ru" ? "us" : "ru";
    std::string layouts = layout.layout;
    std::string variants = layout.variant;
    if (state.groups == Groups::second) {
        layouts = companion + ',' + layouts;
        variants = ',' + variants;
    } else if (state.groups == Groups::switched) {
        layouts += ',' + companion;
        variants += ',';
    }
    if (!loadLayouts(layouts, variants, layout.option)) return false;
    keymap_ = coreKeymap(player_.server());
    if (state.groups == Groups::second) player_.lockGroup(1);
    return keymap_ != nullptr;
}

std::string Sweep::runState(Typist& typist, const State& state) {
    if (state.groups == Groups::one) letGo();
    const auto key = keyOf(keymap_, state.held);
    if (state.hand != Hand::none && !key) return notApplicable;
    if (state.groups == Groups::switched) player_.lockGroup(1);
    if (state.locked) player_.lock(maskOf(keymap_, state.locked));
    const std::string before = player_.condition();
    if (player_.keysDown().any() || player_.state().held != 0) return "not at rest before: " + before;
    if (state.locked && player_.state().locked == 0) return "the lock does not go on";
    if (state.groups != Groups::one && player_.state().lockedGroup != 1) return "the group does not go on";
    std::string why;
    if (state.midway) {
        hand_ = [&, waits = moment_++, down = false]() mutable {
            if (++waits % waitsBetweenPresses != 0 || !why.empty()) return;
            typist.settle();
            down = !down;
            if (!press(state, *key, down)) why = "the hand's key does not move";
        };
    } else if (state.hand != Hand::none) {
        if (!press(state, *key, true)) return "the key does not go down";
        if (player_.state().held == 0) return "the key holds no modifier";
    }
    const std::string typed = typeAndCompare(typist);
    hand_ = nullptr;
    if (why.empty()) why = typed;

    // A key that goes down behind the last stroke is the player's affair.
    if (const auto after = player_.condition(); why.empty() && !state.midway && after != before)
        why = "left " + after + " instead of " + before;
    if (state.hand != Hand::none && !press(state, *key, false) && why.empty()) why = "the key stays down";
    if (const auto end = player_.condition(); why.empty() && end != before)
        why = "left " + end + " after the hand went off, instead of " + before;
    return why;
}

std::string Sweep::typeAndCompare(Typist& typist) {
    const KeyMap& map = typist.clipboard.keyMap();
    for (const Sample& sample : {everythingOf(map), withLackingOf(map)}) {
        (void)player_.typed();
        typist.clipboard.typeString(sample.typed);
        typist.settle();
        const auto arrived = player_.typed();
        if (auto differs = difference(sample.expected, arrived.byNotices); !differs.empty()) return differs;
        if (auto differs = difference(sample.expected, arrived.byEvents); !differs.empty())
            return "by the events' own state, " + differs;
    }
    return {};
}

bool Sweep::press(const State& state, std::uint8_t xKeycode, bool down) {
    if (state.hand == Hand::own) {
        player_.press(xKeycode, down);
        return player_.keysDown()[xKeycode] == down;
    }
    const bool done = nested_.press(xKeycode, down);
    player_.settle();  // what the server has to say about it to others is on its way before its next answer
    return done;
}

void Sweep::letGo() {
    const auto held = nested_.keysDown();
    for (std::size_t key = 0; key < held.size(); ++key)
        if (held[key]) static_cast<void>(nested_.press(static_cast<std::uint8_t>(key), false));
    player_.letGo();
}

void Sweep::wait(std::chrono::microseconds) {
    if (hand_) hand_();
    if (++waits_ % waitsBetweenReads == 0) player_.drain();
}

bool Sweep::report() const {
    int passed = 0;
    std::size_t failed = 0;
    for (const auto& [state, row] : rows_) {
        for (std::size_t at = 0; at < std::min(row.failures.size(), namedFailures); ++at)
            std::printf("%s, %s\n", state.c_str(), row.failures[at].c_str());
        passed += row.exact;
        failed += row.failures.size();
    }
    std::printf("%-16s %8s %8s %16s\n", "state", "exact", "failed", "not applicable");
    for (const auto& [state, row] : rows_)
        std::printf("%-16s %8d %8zu %16d\n", state.c_str(), row.exact, row.failures.size(), row.notApplicable);
    std::printf("%d passed, %zu failed\n", passed, failed);
    return failed == 0 && passed > 0;
}

}  // namespace vantor::sweep

#include "sweep/Sweep.h"

#include <algorithm>

#include "sweep/Samples.h"

namespace vantor::sweep {
namespace {

using Kind = Verdict::Kind;

std::string typeAndCompare(Typist& typist, Receiver& receiver, const Sample& sample) {
    (void)receiver.take();
    typist.type(sample.typed);
    const Receiver::Texts arrived = receiver.take();
    if (auto differs = difference(sample.expected, arrived.byNotifications); !differs.empty()) return differs;
    if (auto differs = difference(sample.expected, arrived.byEvents); !differs.empty())
        return "by the events' own state, " + differs;
    return {};
}

}  // namespace

void Sweep::run(const LayoutName& layout) {
    for (const Groups groups : {Groups::one, Groups::second, Groups::switched}) runGroups(layout, groups);
}

void Sweep::runGroups(const LayoutName& layout, Groups groups) {
    const auto concerns = [&](const State& state) { return state.groups == groups && isWanted(state); };
    if (std::none_of(states.begin(), states.end(), concerns)) return;
    // The list also names the layout that players may write themselves; there is nothing to load until they do.
    if (!isInstalled(layout)) {
        for (const State& state : states)
            if (concerns(state)) results_.add(state.name, layout, {Kind::notApplicable, "not on this machine"});
        return;
    }
    const bool loaded = load(layout, groups);
    std::optional<Typist> typist;
    if (loaded) typist.emplace(pause_);
    for (const State& state : states) {
        if (!concerns(state)) continue;
        results_.add(state.name, layout, loaded ? runState(*typist, state) : Verdict{Kind::failed, "does not load"});
    }
}

bool Sweep::load(const LayoutName& layout, Groups groups) {
    // The companion is as unlike the layout as can be.
    const std::string companion = layout.layout == "ru" ? "us" : "ru";
    switch (groups) {
        case Groups::one:
            return keyboard_.load(layout.layout, layout.variant, layout.option);
        case Groups::second:
            if (!keyboard_.load(companion + ',' + layout.layout, ',' + layout.variant, layout.option)) return false;
            keyboard_.lockGroup(1);
            return keyboard_.condition().group == 1;
        case Groups::switched:
            return keyboard_.load(layout.layout + ',' + companion, layout.variant + ',', layout.option);
    }
    return false;
}

Verdict Sweep::runState(Typist& typist, const State& state) {
    Verdict verdict = runOnce(typist, state);
    for (unsigned done = 1; state.midway && verdict.kind == Kind::exact && done < handMoments_; ++done)
        verdict = runOnce(typist, state);
    return verdict;
}

Verdict Sweep::runOnce(Typist& typist, const State& state) {
    if (state.groups == Groups::one) keyboard_.letGo();
    std::optional<std::uint8_t> key;
    if (state.holder) {
        key = keyboard_.keyOf(state.held);
        if (!key) return {Kind::notApplicable, "no such key"};
    }
    if (state.groups == Groups::switched) keyboard_.lockGroup(1);
    if (state.locked) keyboard_.lock(keyboard_.maskOf(state.locked));
    const PlayersKeyboard::Condition before = keyboard_.condition();
    if (before.down.any() || before.held != 0) return {Kind::failed, "not at rest before: " + before.text()};
    if (state.locked && before.locked == 0) return {Kind::failed, "the lock does not go on"};
    if (state.groups != Groups::one && before.group != 1) return {Kind::failed, "the group does not go on"};
    std::string why;
    bool handIsDown = false;
    if (state.midway) {
        pause_.act = [&, waits = moment_++]() mutable {
            if (++waits % waitsBetweenPresses != 0 || !why.empty()) return;
            typist.settle();
            handIsDown = !handIsDown;
            if (!keyboard_.press(*state.holder, *key, handIsDown)) why = "the hand's key does not move";
        };
    } else if (key) {
        if (!keyboard_.press(*state.holder, *key, true)) return {Kind::failed, "the key does not go down"};
        if (keyboard_.condition().held == 0) return {Kind::failed, "the key holds no modifier"};
    }

    for (const Sample& sample : {everythingOf(typist.keyMap()), withLackingOf(typist.keyMap())})
        if (why.empty()) why = typeAndCompare(typist, receiver_, sample);
    pause_.act = nullptr;

    const PlayersKeyboard::Condition after = keyboard_.condition();
    // A key that goes down behind the last stroke is the player's affair.
    if (why.empty() && !state.midway && after != before) why = "left " + after.text() + " instead of " + before.text();
    if (key && !keyboard_.press(*state.holder, *key, false) && why.empty()) why = "the key stays down";
    if (const auto end = keyboard_.condition(); why.empty() && end != before)
        why = "left " + end.text() + " after the hand went off, instead of " + before.text();
    return {why.empty() ? Kind::exact : Kind::failed, why};
}

bool Sweep::isWanted(const State& state) const {
    return wanted_.empty() || std::find(wanted_.begin(), wanted_.end(), state.name) != wanted_.end();
}

}  // namespace vantor::sweep

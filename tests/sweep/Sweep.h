#pragma once
// One layout after the other through all states that the player may leave a keyboard in while Vantor types, and how
// each fared. Main thread.

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "desktop/Player.h"
#include "platform/Clock.h"
#include "sweep/LayoutList.h"
#include "sweep/NestedServer.h"

namespace vantor::sweep {

struct Typist;
struct State;

// A hand that acts in the middle of a text does so again and again, so many keys apart: no multiple of what a character
// takes, so that it comes at any moment of one.
inline constexpr unsigned waitsBetweenPresses = 11;

class Sweep final : public Pause {
public:
    // The same text is typed so many times under a hand in mid-text, which begins one key later each time.
    Sweep(NestedServer& nested, unsigned handMoments) : nested_(nested), handMoments_(handMoments) {}

    void run(const LayoutName& layout);
    // The first failures of every state by name, the table, then "N passed, M failed". True when all were exact.
    [[nodiscard]] bool report() const;

private:
    struct Row {
        int exact = 0;
        int notApplicable = 0;
        std::vector<std::string> failures;
    };

    // No wait: lets the player's window read on while Vantor types, and a hand act.
    void wait(std::chrono::microseconds duration) override;
    [[nodiscard]] bool load(const LayoutName& layout, const State& state);
    // Why it was not exact; empty where it was, and "no such key" where the state does not apply.
    [[nodiscard]] std::string runState(Typist& typist, const State& state);
    [[nodiscard]] bool press(const State& state, std::uint8_t xKeycode, bool down);
    void letGo();
    [[nodiscard]] std::string typeAndCompare(Typist& typist);

    NestedServer& nested_;
    Player player_;
    const unsigned handMoments_;
    XkbKeymap keymap_;
    std::function<void()> hand_;
    unsigned moment_ = 0;  // when the next hand begins
    unsigned waits_ = 0;
    std::map<std::string, Row> rows_;
};

}  // namespace vantor::sweep

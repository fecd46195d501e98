#pragma once
// One layout through all states. Main thread.

#include "sweep/PlayersKeyboard.h"
#include "sweep/Receiver.h"
#include "sweep/States.h"
#include "sweep/Typist.h"
#include "sweep/Verdict.h"

namespace vantor::sweep {

// A hand that acts in the middle of a text does so again and again, so many keys apart: no multiple of what a character
// takes, so that it comes at any moment of one.
inline constexpr unsigned waitsBetweenPresses = 11;

class Sweep {
public:
    // How many times the same text is typed under such a hand, which begins one key later each time.
    Sweep(PlayersKeyboard& keyboard, Receiver& receiver, std::chrono::microseconds pace,
          std::vector<std::string> wanted, unsigned handMoments)
        : keyboard_(keyboard),
          receiver_(receiver),
          pause_(receiver, pace),
          wanted_(std::move(wanted)),
          handMoments_(handMoments) {}

    void run(const LayoutName& layout);
    [[nodiscard]] const Results& results() const { return results_; }

private:
    void runGroups(const LayoutName& layout, Groups groups);
    [[nodiscard]] bool load(const LayoutName& layout, Groups groups);
    [[nodiscard]] Verdict runState(Typist& typist, const State& state);
    [[nodiscard]] Verdict runOnce(Typist& typist, const State& state);
    [[nodiscard]] bool isWanted(const State& state) const;

    PlayersKeyboard& keyboard_;
    Receiver& receiver_;
    DrainingPause pause_;
    std::vector<std::string> wanted_;
    const unsigned handMoments_;
    unsigned moment_ = 0;  // when the next hand begins
    Results results_;
};

}  // namespace vantor::sweep

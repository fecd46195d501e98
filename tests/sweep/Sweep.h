#pragma once
// One layout through all states. Main thread.

#include "sweep/PlayersKeyboard.h"
#include "sweep/Receiver.h"
#include "sweep/States.h"
#include "sweep/Typist.h"
#include "sweep/Verdict.h"

namespace vantor::sweep {

class Sweep {
public:
    Sweep(PlayersKeyboard& keyboard, Receiver& receiver, std::chrono::microseconds pace,
          std::vector<std::string> wanted)
        : keyboard_(keyboard), receiver_(receiver), pause_(receiver, pace), wanted_(std::move(wanted)) {}

    void run(const LayoutName& layout);
    [[nodiscard]] const Results& results() const { return results_; }

private:
    void runGroups(const LayoutName& layout, Groups groups);
    [[nodiscard]] bool load(const LayoutName& layout, Groups groups);
    [[nodiscard]] Verdict runState(Typist& typist, const State& state);
    [[nodiscard]] bool isWanted(const State& state) const;

    PlayersKeyboard& keyboard_;
    Receiver& receiver_;
    DrainingPause pause_;
    std::vector<std::string> wanted_;
    Results results_;
};

}  // namespace vantor::sweep

#pragma once
// A text that is stopped: at every one of its strokes, and at a thousand random moments, half of them by a focus that
// goes to another window. What was typed is a beginning of it, and nothing is down afterwards. Main thread.

#include "sweep/PlayersKeyboard.h"
#include "sweep/Receiver.h"
#include "sweep/Verdict.h"

namespace vantor::sweep {

class Stops {
public:
    Stops(PlayersKeyboard& keyboard, Receiver& receiver) : keyboard_(keyboard), receiver_(receiver) {}

    // In this layout, the first 200 characters that it has, again and again.
    void stopEverywhere(const LayoutName& layout);
    // As the program wires it, with a typing thread and a focus that is asked for before each stroke.
    void stopAtRandom(unsigned times);
    [[nodiscard]] const Results& results() const { return results_; }

private:
    [[nodiscard]] Verdict everyStop();
    [[nodiscard]] std::string faultAfter(const std::string& text, std::size_t posted,
                                         const PlayersKeyboard::Condition& before);

    PlayersKeyboard& keyboard_;
    Receiver& receiver_;
    Results results_;
};

}  // namespace vantor::sweep

#pragma once
// When the small line over the game is there that says how far a long text is and how to stop it. Main thread.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/Scheduler.h"
#include "input/ClipboardManager.h"

namespace vantor {

class TypingLine {
public:
    struct Needs {
        const ClipboardManager& clipboardManager;
        Scheduler& scheduler;
        std::function<void(bool shown)> show;
    };

    explicit TypingLine(Needs needs) : needs_(std::move(needs)) {}
    TypingLine(const TypingLine&) = delete;
    TypingLine& operator=(const TypingLine&) = delete;

    // After each notice of the typing: a text that takes longer than two seconds is shown from then on.
    void follow();

private:
    void setShown(bool shown);

    Needs needs_;
    bool shown_ = false;
    std::size_t text_ = 0;  // the last one that was waited for
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

// "typing 512 of 3,000 · Esc stops"
[[nodiscard]] std::string typingLineText(std::size_t posted, std::size_t characters);

}  // namespace vantor

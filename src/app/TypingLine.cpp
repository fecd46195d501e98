#include "app/TypingLine.h"

#include <chrono>

namespace vantor {

namespace {

constexpr std::chrono::seconds patience{2};

std::string withThousands(std::size_t number) {
    std::string text = std::to_string(number);
    for (auto at = static_cast<int>(text.size()) - 3; at > 0; at -= 3) text.insert(static_cast<std::size_t>(at), ",");
    return text;
}

}  // namespace

void TypingLine::follow() {
    const auto progress = needs_.clipboardManager.progress();
    if (!progress) return setShown(false);
    if (std::exchange(text_, progress->number) == progress->number) return;
    needs_.scheduler.after(patience, [this, alive = std::weak_ptr(alive_), text = text_] {
        if (alive.expired()) return;
        const auto now = needs_.clipboardManager.progress();
        if (now && now->number == text) setShown(true);
    });
}

void TypingLine::setShown(bool shown) {
    if (std::exchange(shown_, shown) != shown) needs_.show(shown);
}

std::string typingLineText(std::size_t posted, std::size_t characters) {
    return "typing " + withThousands(posted) + " of " + withThousands(characters) + " · Esc stops";
}

}  // namespace vantor

#include "input/StatusMessage.h"

#include <utility>
#include <vector>

#include "data/Graphemes.h"

namespace vantor {

namespace {

using namespace std::chrono_literals;

constexpr auto perCharacter = 20ms;
constexpr auto whole = 1000ms;

}  // namespace

void StatusMessage::Shown::set(QString next) {
    text = std::move(next);
    if (changed) changed();
}

void StatusMessage::show(const QString& message) {
    // Of what the player sees as one character, nothing is shown by halves.
    const std::vector<QString> letters = graphemes(message + QStringLiteral("    "));
    // Also between the press and the first character.
    if (std::exchange(shown_->underWay, true)) return;
    const auto step = [this](std::chrono::milliseconds at, auto edit) {
        scheduler_.after(at, [alive = std::weak_ptr(shown_), edit] {
            if (const auto shown = alive.lock()) edit(*shown);
        });
    };
    const std::size_t count = letters.size();
    for (std::size_t i = 0; i < count; ++i)
        step(i * perCharacter, [letter = letters[i]](Shown& shown) { shown.set(shown.text + letter); });
    const auto erasing = whole + count * perCharacter;
    for (std::size_t j = 0; j < count; ++j)
        step(erasing + j * perCharacter, [length = letters[count - 1 - j].size()](Shown& shown) {
            shown.underWay = shown.text.size() > length;
            shown.set(shown.text.chopped(length));
        });
}

}  // namespace vantor

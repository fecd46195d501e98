#include "app/ClickFocus.h"

#include <chrono>

namespace vantor {

namespace {

// Three pictures of a slow game: Wine gives no window the keys that are still unread when the focus goes. Itself it was
// seen to hold the pointer 30 to 110 ms after it had got the focus.
constexpr std::chrono::milliseconds betweenLooks{100};
constexpr int looks = 10;

}  // namespace

void ClickFocus::windowChanged() {
    wasHeld_ = false;
    watch();
}

void ClickFocus::frontmostChanged() { watch(); }

void ClickFocus::watch() {
    current_ = std::make_shared<bool>();
    if (needs_.wanted()) look(looks);
}

void ClickFocus::look(int left) {
    needs_.scheduler.after(betweenLooks, [this, left, current = std::weak_ptr(current_)] {
        if (current.expired() || !needs_.wanted()) return;
        const PointerHold hold = needs_.workspace.pointerHold();
        // What passes may go on for any time; the player sees nothing wrong before it is over.
        if (hold == PointerHold::passing) return look(left);
        wasHeld_ |= hold == PointerHold::lasting;
        if (wasHeld_) needs_.take();
        if (left > 1) look(left - 1);
    });
}

}  // namespace vantor

#pragma once
// The synthetic key events: each is made once, at the start or when the layout is learned, and used again for every
// later post. They bear a mark by which Vantor knows its own. Main
// thread while the layout is learned, then the typing thread.

#include <memory>

#include "platform/Keys.h"

namespace vantor {

class KeyboardEvents {
public:
    // Makes the plain events of all keys. An event that cannot be made ends the program, with one line.
    KeyboardEvents();
    ~KeyboardEvents();
    KeyboardEvents(const KeyboardEvents&) = delete;
    KeyboardEvents& operator=(const KeyboardEvents&) = delete;

    // A key-down event, as the system's CGEventRef; with flags of its own unless they are 0. Lives as long as this.
    [[nodiscard]] void* event(KeyCode keyCode, ModifierFlags flags);

    // Whether an event, as the system's CGEventRef, is one of these, also after its way through the system. Null is
    // not.
    [[nodiscard]] static bool isOwn(void* event);

private:
    struct Events;

    std::unique_ptr<Events> events_;
};

}  // namespace vantor

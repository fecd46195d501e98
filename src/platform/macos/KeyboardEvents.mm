#include "platform/macos/KeyboardEvents.h"

#import <CoreGraphics/CoreGraphics.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>

#include "platform/macos/Owned.h"

namespace vantor {

namespace {

// "Vant", in a field that the system hands on and leaves to programs.
constexpr int64_t mark = 0x56616e74;

}  // namespace

struct KeyboardEvents::Events {
    std::map<std::pair<KeyCode, ModifierFlags>, Owned<CGEventRef>> made;
};

KeyboardEvents::KeyboardEvents() : events_(std::make_unique<Events>()) {
    for (KeyCode keyCode = 0; keyCode < keyCodeCount; ++keyCode) static_cast<void>(event(keyCode, 0));
}

KeyboardEvents::~KeyboardEvents() = default;

void* KeyboardEvents::event(KeyCode keyCode, ModifierFlags flags) {
    auto& made = events_->made[{keyCode, flags}];
    if (!made) {
        made = Owned<CGEventRef>(CGEventCreateKeyboardEvent(nullptr, keyCode, true));
        if (!made) {
            std::fprintf(stderr, "vantor: the system makes no event for the key %d\n", keyCode);
            std::abort();
        }
        if (flags != 0) CGEventSetFlags(made.get(), flags);
        CGEventSetIntegerValueField(made.get(), kCGEventSourceUserData, mark);
    }
    return made.get();
}

bool KeyboardEvents::isOwn(void* event) {
    return event && CGEventGetIntegerValueField(static_cast<CGEventRef>(event), kCGEventSourceUserData) == mark;
}

}  // namespace vantor

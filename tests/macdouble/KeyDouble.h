#pragma once
// The keyboard of the test: what its layout gives, what it is asked to post, and the monitors that listen to it.

#import <AppKit/NSEvent.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace macdouble {

// The characters of a key with flags; empty for none. Nothing is typed before it is set.
using Layout = std::function<std::string(CGKeyCode keyCode, CGEventFlags flags)>;
void setLayout(Layout layout);

// From the next one on, no event can be made.
void refuseEvents(bool refuse);
// How many events exist, and how often one was made.
int liveEvents();
int madeEvents();

// A key of the hardware, to another application or to a window of ours. For the latter, whether it was passed on.
void pressElsewhere(CGEventType type, CGKeyCode keyCode, CGEventFlags flags);
bool pressHere(CGEventType type, CGKeyCode keyCode, CGEventFlags flags);
// An event that was posted, on its way back to the monitors; whether it was passed on to a window of ours.
bool hear(CGEventRef posted);
CGEventRef lastPosted();

}  // namespace macdouble

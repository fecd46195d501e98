#pragma once
// The desktop of the test: the application in front, the bundles, the windows that a toolkit has made, the screens.

#import <AppKit/NSPanel.h>
#import <AppKit/NSView.h>

#include <optional>
#include <string>
#include <vector>

// A window of a system that knows of activation, and a panel of one that does not.
@interface DoubleWindow : NSWindow
@end
@interface DoublePanel : NSPanel
@end

// A toolkit's view in its window.
@interface DoubleView : NSView {
    NSWindow* window_;
}
- (id)initInWindow:(NSWindow*)window;
@end
@interface ToolkitView : DoubleView
@end

namespace macdouble {

// Nothing: no application; an empty text: one without an identifier.
void setFrontmost(std::optional<std::string> identifier);
// The one bundle that is found, and the name in it; null for a bundle that has none.
void setBundle(std::string identifier, id name);

// In the accessibility settings, with the notice of a change.
void setReducesMotion(bool reduces);

// As the system counts, upwards. The main one is that with the keyboard, or none.
void setScreens(std::vector<NSRect> frames, std::optional<std::size_t> main);

}  // namespace macdouble

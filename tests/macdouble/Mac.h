#pragma once
// The Mac of a test: what a test sets up, what a player does there, and what is to be seen of it afterwards. Anew for
// each test.

#import <AppKit/AppKit.h>
#import <IOKit/hidsystem/IOHIDLib.h>
#import <Security/Security.h>
#import <WebKit/WebKit.h>

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

// A window of a system that knows of activation; and the view of a toolkit, of a class of its own, in a window.
@interface ActivationWindow : NSWindow {
    BOOL preventsActivation_;
}
@property(readonly) BOOL preventsActivation;
@end
@interface ToolkitView : NSView
@end

@interface NSView ()
@property(assign) NSWindow* window;
@end
@interface NSWindow ()
@property(readonly) BOOL centered;
@property(assign) NSResponder* firstResponder;
@end
@interface NSWorkspace ()
@property(retain) NSRunningApplication* frontmostApplication;
@end
@interface NSRunningApplication ()
@property(copy) NSString* bundleIdentifier;
@end

// A page as its engine changes it.
@interface WKWebView ()
@property(copy) NSString* title;
@property(getter=isLoading) BOOL loading;
@property double estimatedProgress;
@property BOOL hasOnlySecureContent, canGoBack, canGoForward, drawsBackground;
- (void)changeURL:(NSURL*)url;
- (void)changeServerTrust:(SecTrustRef)trust;
@end
@interface WKNavigationAction ()
@property(retain) WKFrameInfo* targetFrame;  // nil for a window of its own
@property WKNavigationType navigationType;
@property(copy) NSURLRequest* request;
@end
@interface WKFrameInfo ()
@property(getter=isMainFrame) BOOL mainFrame;
@end

// The end of an object that owns these.
#define OWNS(...)                        \
    -(void)dealloc {                     \
        macdouble::letGo({__VA_ARGS__}); \
        [super dealloc];                 \
    }

namespace macdouble {

void letGo(std::initializer_list<id> owned);

struct Mac {
    // What reached others than Vantor, in order: posted keys, questions to the player, loaded pages.
    std::vector<std::string> done;
    // What the player has allowed.
    bool trusted = true;
    IOHIDAccessType listening = kIOHIDAccessTypeGranted;
    bool hearsWhereTrusted = false;  // without that permission
    bool loopTurns = true;           // monitors that were added before hear nothing
    // Whether keys go to Vantor. Hidden, it loses them only after somebody has looked so often.
    bool active = false;
    bool hidden = false;
    int looksUntilHidden = 0;
    bool refusesEvents = false;
    int madeEvents = 0;
    CGEventRef lastPosted = nullptr;

    std::string bundle;  // the one that is found, and the name in it; nil for one without
    id bundleName = nil;
    bool bundleHasImage = true;
    NSInteger activationPolicy = 0;
    bool reducesMotion = false;
    std::vector<NSRect> screens;  // as the system counts, upwards
    std::optional<std::size_t> mainScreen;
    NSMutableDictionary* frames = [NSMutableDictionary dictionary];  // kept by name
    NSMutableArray* statusItems = [NSMutableArray array];

    NSMutableArray* keychainItems = [NSMutableArray array];
    OSStatus copyStatus = errSecSuccess;  // in place of what the items say
    OSStatus deleteStatus = errSecSuccess;
    std::function<void()> beforeCopying;  // as long as the player is being asked

    void setFrontmost(std::optional<std::string> identifier);  // an empty text: an application without an identifier
    void setReducesMotion(bool reduces);                       // with the notice of a change
    // A key of the hardware, to a window of ours or to another application; whether the window gets it.
    bool press(CGEventType type, CGKeyCode keyCode, CGEventFlags flags, bool here);
    // The same of the event that was posted last.
    bool hearPosted(bool here);
    // To the view that is asked first, where a menu would take it.
    bool pressIn(NSView* view, CGKeyCode keyCode, CGEventFlags flags);
    // Only what is enabled can be chosen.
    bool choose(NSMenuItem* item);
};

Mac& mac();
void note(std::string call);
// What was done since it was asked last.
std::vector<std::string> done();
// As most of the system's desktop library wants it.
void needsMainThread();

}  // namespace macdouble

#pragma once
// A web view with the keys for cutting, copying, pasting and selecting all while it has the keyboard. The system hands
// them out from an application's Edit menu; with none, those of the toolkit's own fields stay the toolkit's.
// Objective-C++ only; main thread.

#import <WebKit/WebKit.h>

@interface VantorEditableWebView : WKWebView
@end

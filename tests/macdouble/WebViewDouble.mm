// A web view without an engine: a test changes its values as the engine would.

#include "Mac.h"

using macdouble::note;

@implementation WKUserScript
- (instancetype)initWithSource:(NSString*)source
                 injectionTime:(WKUserScriptInjectionTime)injectionTime
              forMainFrameOnly:(BOOL)forMainFrameOnly {
    self = [super init];
    text_ = [[NSString alloc] initWithFormat:@"%@ at %ld in %@", source, (long)injectionTime,
                                             forMainFrameOnly ? @"the main frame" : @"all frames"];
    return self;
}
OWNS(text_)
- (NSString*)description {
    return text_;
}
@end

@implementation WKUserContentController
- (void)addUserScript:(WKUserScript*)userScript {
    note(std::string("script ") + [[userScript description] UTF8String]);
}
@end

@implementation WKWebViewConfiguration
- (WKUserContentController*)userContentController {
    return [[[WKUserContentController alloc] init] autorelease];
}
@end

@implementation WKFrameInfo
@synthesize mainFrame = mainFrame_;
@end

@implementation WKNavigationAction
@synthesize targetFrame = targetFrame_, navigationType = navigationType_, request = request_;
OWNS(targetFrame_, request_)
@end

@implementation WKWebView
@synthesize navigationDelegate = navigationDelegate_, UIDelegate = uiDelegate_, title = title_, URL = url_,
            configuration = configuration_, loading = loading_, estimatedProgress = estimatedProgress_,
            hasOnlySecureContent = hasOnlySecureContent_, serverTrust = serverTrust_, canGoBack = canGoBack_,
            canGoForward = canGoForward_, drawsBackground = drawsBackground_;
- (instancetype)initWithFrame:(NSRect)frame configuration:(WKWebViewConfiguration*)configuration {
    self = [super initWithFrame:frame];
    configuration_ = [configuration retain];
    drawsBackground_ = YES;
    return self;
}
OWNS(configuration_, title_, url_)
- (WKNavigation*)loadRequest:(NSURLRequest*)request {
    note(std::string("load ") + [[[request URL] absoluteString] UTF8String] + " policy " +
         std::to_string([request cachePolicy]) + " timeout " + std::to_string(lround([request timeoutInterval])));
    return nil;
}
// A page serves the text commands like any text field.
- (BOOL)tryToPerform:(SEL)action with:(id)object {
    (void)object;
    note(sel_getName(action));
    return YES;
}
- (WKNavigation*)goBack {
    note("back");
    return nil;
}
- (WKNavigation*)goForward {
    note("forward");
    return nil;
}
// This runtime's observation hears neither of a key in capitals nor of a pointer.
- (void)changeURL:(NSURL*)url {
    [self willChangeValueForKey:@"URL"];
    [url_ autorelease];
    url_ = [url copy];
    [self didChangeValueForKey:@"URL"];
}
- (void)changeServerTrust:(SecTrustRef)trust {
    [self willChangeValueForKey:@"serverTrust"];
    serverTrust_ = trust;
    [self didChangeValueForKey:@"serverTrust"];
}
+ (BOOL)automaticallyNotifiesObserversForKey:(NSString*)key {
    return ![key isEqual:@"serverTrust"] && ![key isEqual:@"URL"];
}
- (id)valueForKey:(NSString*)key {
    return [key isEqual:@"serverTrust"] ? [NSValue valueWithPointer:serverTrust_] : [super valueForKey:key];
}
@end

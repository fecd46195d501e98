#import "WebViewDouble.h"

#include <string>

#include "ServiceCalls.h"

@implementation WKUserScript
@synthesize source = source_;
@synthesize injectionTime = injectionTime_;
@synthesize forMainFrameOnly = forMainFrameOnly_;
- (instancetype)initWithSource:(NSString*)source
                 injectionTime:(WKUserScriptInjectionTime)injectionTime
              forMainFrameOnly:(BOOL)forMainFrameOnly {
    self = [super init];
    if (self) {
        source_ = [source copy];
        injectionTime_ = injectionTime;
        forMainFrameOnly_ = forMainFrameOnly;
    }
    return self;
}
- (void)dealloc {
    [source_ release];
    [super dealloc];
}
@end

@implementation WKUserContentController
@synthesize userScripts = userScripts_;
- (id)init {
    self = [super init];
    if (self) userScripts_ = [[NSMutableArray alloc] init];
    return self;
}
- (void)dealloc {
    [userScripts_ release];
    [super dealloc];
}
- (void)addUserScript:(WKUserScript*)userScript {
    [userScripts_ addObject:userScript];
}
@end

@implementation WKWebViewConfiguration
@synthesize userContentController = userContentController_;
- (id)init {
    self = [super init];
    if (self) userContentController_ = [[WKUserContentController alloc] init];
    return self;
}
- (void)dealloc {
    [userContentController_ release];
    [super dealloc];
}
// A copy shares the controller.
- (id)copyWithZone:(NSZone*)zone {
    WKWebViewConfiguration* const copy = [[[self class] allocWithZone:zone] init];
    [copy setUserContentController:userContentController_];
    return copy;
}
@end

@implementation WKFrameInfo
@synthesize mainFrame = mainFrame_;
- (id)initWithMainFrame:(BOOL)mainFrame {
    self = [super init];
    if (self) mainFrame_ = mainFrame;
    return self;
}
@end

@implementation WKNavigationAction
@synthesize targetFrame = targetFrame_;
@synthesize navigationType = navigationType_;
@synthesize request = request_;
- (id)initWithURL:(NSString*)url type:(WKNavigationType)type frame:(WKFrameInfo*)frame {
    self = [super init];
    if (self) {
        targetFrame_ = [frame retain];
        navigationType_ = type;
        request_ = [[NSURLRequest alloc] initWithURL:[NSURL URLWithString:url]];
    }
    return self;
}
- (void)dealloc {
    [targetFrame_ release];
    [request_ release];
    [super dealloc];
}
@end

@implementation WKWebView
@synthesize navigationDelegate = navigationDelegate_;
@synthesize UIDelegate = uiDelegate_;
@synthesize title = title_;
@synthesize URL = url_;
@synthesize loading = loading_;
@synthesize estimatedProgress = estimatedProgress_;
@synthesize hasOnlySecureContent = hasOnlySecureContent_;
@synthesize serverTrust = serverTrust_;
@synthesize canGoBack = canGoBack_;
@synthesize canGoForward = canGoForward_;
- (instancetype)initWithFrame:(NSRect)frame configuration:(WKWebViewConfiguration*)configuration {
    self = [super initWithFrame:frame];
    if (self) configuration_ = [configuration copy];
    return self;
}
- (void)dealloc {
    macdouble::serviceCalls().add(navigationDelegate_ || uiDelegate_ ? "view gone with delegates" : "view gone");
    [configuration_ release];
    [title_ release];
    [url_ release];
    [super dealloc];
}
- (WKWebViewConfiguration*)configuration {
    return [[configuration_ copy] autorelease];
}
- (WKNavigation*)loadRequest:(NSURLRequest*)request {
    macdouble::serviceCalls().add(std::string("load ") + [[[request URL] absoluteString] UTF8String] + " policy " +
                                  std::to_string([request cachePolicy]) + " timeout " +
                                  std::to_string(static_cast<int>([request timeoutInterval])));
    return nil;
}
- (WKNavigation*)goBack {
    macdouble::serviceCalls().add("goBack");
    return nil;
}
- (WKNavigation*)goForward {
    macdouble::serviceCalls().add("goForward");
    return nil;
}
- (void)setValue:(id)value forKey:(NSString*)key {
    macdouble::serviceCalls().add(std::string("setValue:") + [[value description] UTF8String] +
                                  " forKey:" + [key UTF8String]);
    if (![key isEqual:@"drawsBackground"]) [super setValue:value forKey:key];
}
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSKeyValueObservingOptions)options
            context:(void*)context {
    macdouble::serviceCalls().add(std::string("observe ") + [keyPath UTF8String] + " options " +
                                  std::to_string(options));
    [super addObserver:observer forKeyPath:keyPath options:options context:context];
}
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath {
    macdouble::serviceCalls().add(std::string("unobserve ") + [keyPath UTF8String]);
    [super removeObserver:observer forKeyPath:keyPath];
}
- (void)setTitle:(NSString*)title {
    [title_ autorelease];
    title_ = [title copy];
}
- (void)changeURL:(NSURL*)url {
    [self willChangeValueForKey:@"URL"];
    [url_ autorelease];
    url_ = [url copy];
    [self didChangeValueForKey:@"URL"];
}
- (void)setLoading:(BOOL)loading {
    loading_ = loading;
}
- (void)setEstimatedProgress:(double)progress {
    estimatedProgress_ = progress;
}
- (void)setHasOnlySecureContent:(BOOL)secure {
    hasOnlySecureContent_ = secure;
}
// This runtime boxes no pointers by itself, and looks at a value whenever it tells of one.
- (id)valueForKey:(NSString*)key {
    return [key isEqual:@"serverTrust"] ? [NSValue valueWithPointer:serverTrust_] : [super valueForKey:key];
}
- (void)changeServerTrust:(SecTrustRef)trust {
    [self willChangeValueForKey:@"serverTrust"];
    serverTrust_ = trust;
    [self didChangeValueForKey:@"serverTrust"];
}
+ (BOOL)automaticallyNotifiesObserversForKey:(NSString*)key {
    return ![key isEqual:@"serverTrust"] && ![key isEqual:@"URL"];
}
- (void)setCanGoBack:(BOOL)can {
    canGoBack_ = can;
}
- (void)setCanGoForward:(BOOL)can {
    canGoForward_ = can;
}
@end

#pragma once
// What is used of the system's web view, as its public documentation declares it.

#import <AppKit/AppKit.h>

typedef struct __SecTrust* SecTrustRef;

enum WKUserScriptInjectionTime : NSInteger { WKUserScriptInjectionTimeAtDocumentEnd = 1 };
enum WKNavigationActionPolicy : NSInteger { WKNavigationActionPolicyCancel, WKNavigationActionPolicyAllow };
enum WKNavigationType : NSInteger { WKNavigationTypeLinkActivated = 0, WKNavigationTypeOther = -1 };

@class WKNavigation, WKWebView, WKWindowFeatures;

@interface WKUserScript : NSObject {
    NSString* text_;
}
- (instancetype)initWithSource:(NSString*)source
                 injectionTime:(WKUserScriptInjectionTime)injectionTime
              forMainFrameOnly:(BOOL)forMainFrameOnly;
@end

@interface WKUserContentController : NSObject
- (void)addUserScript:(WKUserScript*)userScript;
@end

@interface WKWebViewConfiguration : NSObject
@property(readonly) WKUserContentController* userContentController;
@end

@interface WKFrameInfo : NSObject {
    BOOL mainFrame_;
}
@property(readonly, getter=isMainFrame) BOOL mainFrame;
@end

@interface WKNavigationAction : NSObject {
    WKFrameInfo* targetFrame_;
    WKNavigationType navigationType_;
    NSURLRequest* request_;
}
@property(readonly, retain) WKFrameInfo* targetFrame;
@property(readonly) WKNavigationType navigationType;
@property(readonly, copy) NSURLRequest* request;
@end

@protocol WKNavigationDelegate <NSObject>
@optional
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler;
- (void)webViewWebContentProcessDidTerminate:(WKWebView*)webView;
@end

@protocol WKUIDelegate <NSObject>
@optional
- (WKWebView*)webView:(WKWebView*)webView
    createWebViewWithConfiguration:(WKWebViewConfiguration*)configuration
               forNavigationAction:(WKNavigationAction*)navigationAction
                    windowFeatures:(WKWindowFeatures*)windowFeatures;
@end

@interface WKWebView : NSView {
    WKWebViewConfiguration* configuration_;
    id<WKNavigationDelegate> navigationDelegate_;
    id<WKUIDelegate> uiDelegate_;
    NSString* title_;
    NSURL* url_;
    double estimatedProgress_;
    SecTrustRef serverTrust_;
    BOOL loading_, hasOnlySecureContent_, canGoBack_, canGoForward_, drawsBackground_;
}
- (instancetype)initWithFrame:(NSRect)frame configuration:(WKWebViewConfiguration*)configuration;
- (WKNavigation*)loadRequest:(NSURLRequest*)request;
- (WKNavigation*)goBack;
- (WKNavigation*)goForward;
@property(readonly) WKWebViewConfiguration* configuration;
@property(assign) id<WKNavigationDelegate> navigationDelegate;
@property(assign) id<WKUIDelegate> UIDelegate;
@property(readonly, copy) NSString* title;
@property(readonly, copy) NSURL* URL;
@property(readonly, getter=isLoading) BOOL loading;
@property(readonly) double estimatedProgress;
@property(readonly) BOOL hasOnlySecureContent, canGoBack, canGoForward;
@property(readonly) SecTrustRef serverTrust;
@end

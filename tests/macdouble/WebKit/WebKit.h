#pragma once
// What is used of the system's web view, as its public documentation declares it.

#import <AppKit/NSView.h>
#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

typedef struct __SecTrust* SecTrustRef;

typedef enum : NSInteger {
    WKUserScriptInjectionTimeAtDocumentStart = 0,
    WKUserScriptInjectionTimeAtDocumentEnd = 1,
} WKUserScriptInjectionTime;

typedef enum : NSInteger {
    WKNavigationActionPolicyCancel = 0,
    WKNavigationActionPolicyAllow = 1,
} WKNavigationActionPolicy;

typedef enum : NSInteger {
    WKNavigationTypeLinkActivated = 0,
    WKNavigationTypeFormSubmitted = 1,
    WKNavigationTypeBackForward = 2,
    WKNavigationTypeReload = 3,
    WKNavigationTypeFormResubmitted = 4,
    WKNavigationTypeOther = -1,
} WKNavigationType;

@class WKNavigation;
@class WKWebView;
@class WKWindowFeatures;

@interface WKUserScript : NSObject {
    NSString* source_;
    WKUserScriptInjectionTime injectionTime_;
    BOOL forMainFrameOnly_;
}
- (instancetype)initWithSource:(NSString*)source
                 injectionTime:(WKUserScriptInjectionTime)injectionTime
              forMainFrameOnly:(BOOL)forMainFrameOnly;
@property(readonly, copy) NSString* source;
@property(readonly) WKUserScriptInjectionTime injectionTime;
@property(readonly, getter=isForMainFrameOnly) BOOL forMainFrameOnly;
@end

@interface WKUserContentController : NSObject {
    NSMutableArray* userScripts_;
}
- (void)addUserScript:(WKUserScript*)userScript;
@property(readonly, copy) NSArray* userScripts;
@end

@interface WKWebViewConfiguration : NSObject <NSCopying> {
    WKUserContentController* userContentController_;
}
@property(retain) WKUserContentController* userContentController;
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
@property(readonly, copy) WKFrameInfo* targetFrame;
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
    BOOL loading_;
    double estimatedProgress_;
    BOOL hasOnlySecureContent_;
    SecTrustRef serverTrust_;
    BOOL canGoBack_;
    BOOL canGoForward_;
}
- (instancetype)initWithFrame:(NSRect)frame configuration:(WKWebViewConfiguration*)configuration;
- (WKNavigation*)loadRequest:(NSURLRequest*)request;
- (WKNavigation*)goBack;
- (WKNavigation*)goForward;
@property(readonly, copy) WKWebViewConfiguration* configuration;
@property(assign) id<WKNavigationDelegate> navigationDelegate;
@property(assign) id<WKUIDelegate> UIDelegate;
@property(readonly, copy) NSString* title;
@property(readonly, copy) NSURL* URL;
@property(readonly, getter=isLoading) BOOL loading;
@property(readonly) double estimatedProgress;
@property(readonly) BOOL hasOnlySecureContent;
@property(readonly) SecTrustRef serverTrust;
@property(readonly) BOOL canGoBack;
@property(readonly) BOOL canGoForward;
@end

#pragma once
// A web view whose values a test changes as the engine would, and that keeps what it was asked.

#import <WebKit/WebKit.h>

@interface WKWebView ()
- (void)setTitle:(NSString*)title;
- (void)changeURL:(NSURL*)url;
- (void)setLoading:(BOOL)loading;
- (void)setEstimatedProgress:(double)progress;
- (void)setHasOnlySecureContent:(BOOL)secure;
- (void)changeServerTrust:(SecTrustRef)trust;
- (void)setCanGoBack:(BOOL)can;
- (void)setCanGoForward:(BOOL)can;
@end

@interface WKNavigationAction ()
// The frame may be nil, which stands for a window of its own.
- (id)initWithURL:(NSString*)url type:(WKNavigationType)type frame:(WKFrameInfo*)frame;
@end

@interface WKFrameInfo ()
- (id)initWithMainFrame:(BOOL)mainFrame;
@end

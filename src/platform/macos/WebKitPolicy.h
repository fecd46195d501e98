#pragma once
// What a page may do: show web pages, and hand a link that the player clicked to the desktop. New windows open in the
// same view; files and other schemes are refused. Objective-C++ only; main thread.

#import <Foundation/Foundation.h>
#import <WebKit/WebKit.h>

#include <functional>
#include <string>

@interface VantorWebPolicy : NSObject <WKNavigationDelegate, WKUIDelegate> {
    std::function<void(const std::string&)>* openOutside_;
    std::function<void()>* gone_;
}
- (id)initWithOpenOutside:(std::function<void(const std::string&)>)openOutside gone:(std::function<void()>)gone;
@end

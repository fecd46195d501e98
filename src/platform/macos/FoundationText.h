#pragma once
// Between the seam's UTF-8 and the system's strings. Objective-C++ only; what it makes is autoreleased.

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace vantor {

// Nil when the bytes are no UTF-8.
[[nodiscard]] inline NSString* systemText(std::string_view text) {
    return [[[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding] autorelease];
}

// As text that is shown or is a name, where there has to be one: empty for what is no UTF-8.
[[nodiscard]] inline NSString* textOrEmpty(std::string_view text) {
    NSString* const string = systemText(text);
    return string ? string : @"";
}

// Empty for nil. A text may hold the character zero.
[[nodiscard]] inline std::string plainText(NSString* text) {
    NSData* const bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return bytes ? std::string(static_cast<const char*>([bytes bytes]), [bytes length]) : std::string();
}

}  // namespace vantor

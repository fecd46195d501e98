// A registration that knows each file once, and takes a file that begins as a font does.

#import <CoreText/CoreText.h>
#import <Foundation/Foundation.h>

#include "ServiceCalls.h"

bool CTFontManagerRegisterFontsForURL(CFURLRef fontURL, CTFontManagerScope scope, CFErrorRef* error) {
    static NSMutableSet* known = [[NSMutableSet alloc] init];
    NSString* const path = [(NSURL*)fontURL path];
    macdouble::serviceCalls().add(std::string("register ") + [[path lastPathComponent] UTF8String] + " scope " +
                                  std::to_string(scope));
    const unsigned char begin[] = {0, 1, 0, 0};
    NSData* const bytes = [NSData dataWithContentsOfFile:path];
    NSInteger failure = 0;
    if (!bytes)
        failure = kCTFontManagerErrorFileNotFound;
    else if ([bytes length] < 4 || memcmp([bytes bytes], begin, sizeof begin) != 0)
        failure = kCTFontManagerErrorUnrecognizedFormat;
    else if ([known containsObject:path])
        failure = kCTFontManagerErrorAlreadyRegistered;
    if (failure == 0) {
        [known addObject:path];
        return true;
    }
    *error = (CFErrorRef)[[NSError alloc] initWithDomain:@"com.apple.CoreText.CTFontManagerErrorDomain"
                                                    code:failure
                                                userInfo:nil];
    return false;
}

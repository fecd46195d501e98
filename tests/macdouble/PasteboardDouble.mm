// A pasteboard that takes a text only after it was cleared for it, as the system's does.

#import <AppKit/NSPasteboard.h>

#include "ServiceCalls.h"

NSPasteboardType const NSPasteboardTypeString = @"public.utf8-plain-text";

@implementation NSPasteboard
+ (NSPasteboard*)generalPasteboard {
    static NSPasteboard* general = [[NSPasteboard alloc] init];
    return general;
}
- (id)init {
    self = [super init];
    if (self) contents_ = [[NSMutableDictionary alloc] init];
    return self;
}
- (NSInteger)clearContents {
    macdouble::serviceCalls().add("clearContents");
    [contents_ removeAllObjects];
    owned_ = YES;
    return 1;
}
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)dataType {
    macdouble::serviceCalls().add(std::string("setString:") + [string UTF8String] +
                                  " forType:" + [dataType UTF8String]);
    if (owned_) [contents_ setObject:string forKey:dataType];
    return owned_;
}
- (NSString*)stringForType:(NSPasteboardType)dataType {
    return [contents_ objectForKey:dataType];
}
@end

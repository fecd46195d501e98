#pragma once
// What is used of the system's pasteboard, as its public documentation declares it.

#import <Foundation/Foundation.h>

typedef NSString* NSPasteboardType;
extern NSPasteboardType const NSPasteboardTypeString;

@interface NSPasteboard : NSObject {
    NSMutableDictionary* contents_;
    BOOL owned_;
}
+ (NSPasteboard*)generalPasteboard;
- (NSInteger)clearContents;
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)dataType;
- (NSString*)stringForType:(NSPasteboardType)dataType;
@end

#pragma once
// What is used of the system's images, as their public documentation declares them.

#import <Foundation/Foundation.h>

typedef NSString* NSImageName;

@interface NSImage : NSObject {
    NSString* name_;
}
// Nil when nothing has the name.
+ (NSImage*)imageNamed:(NSImageName)name;
- (NSImageName)name;
@end

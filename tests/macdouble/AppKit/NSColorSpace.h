#pragma once
// What is used of the system's colour spaces, as their public documentation declares them.

#import <Foundation/Foundation.h>

@interface NSColorSpace : NSObject
+ (NSColorSpace*)genericRGBColorSpace;
@end

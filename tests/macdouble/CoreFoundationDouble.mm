#import <CoreFoundation/CoreFoundation.h>

CFBooleanRef kCFBooleanTrue;
CFBooleanRef kCFBooleanFalse;
const CFStringRef kCFBundleNameKey = (CFStringRef) @"CFBundleName";

void CFRelease(CFTypeRef object) { [(id)object release]; }

// Numbers can be made only once the runtime knows their classes.
@interface CoreFoundationStart : NSObject
@end

@implementation CoreFoundationStart
+ (void)load {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    kCFBooleanTrue = (CFBooleanRef)[[NSNumber numberWithBool:YES] retain];
    kCFBooleanFalse = (CFBooleanRef)[[NSNumber numberWithBool:NO] retain];
    [pool release];
}
@end

#pragma once
// Comes before every file that is built against the doubles. gcc's headers say (BOOL)1 for YES, of which @YES cannot be
// made.
#ifdef __OBJC__
#import <Foundation/Foundation.h>
#undef YES
#undef NO
#define YES __objc_yes
#define NO __objc_no
#endif

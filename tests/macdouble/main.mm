// Runs the tests of the macOS adapters against the doubles.

#include <gmock/gmock.h>

#import <Foundation/Foundation.h>

int main(int count, char** arguments) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    testing::InitGoogleMock(&count, arguments);
    const int status = RUN_ALL_TESTS();
    [pool release];
    return status;
}

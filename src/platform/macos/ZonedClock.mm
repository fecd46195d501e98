#include "platform/macos/ZonedClock.h"

#import <Foundation/Foundation.h>

#include <cmath>

namespace vantor {

namespace {

NSDate* dateOf(Clock::Seconds at) { return [NSDate dateWithTimeIntervalSince1970:static_cast<NSTimeInterval>(at)]; }

NSTimeZone* currentZone() {
    // The class keeps the zone that it found first until it is told to look again.
    [NSTimeZone resetSystemTimeZone];
    return [NSTimeZone systemTimeZone];
}

}  // namespace

Clock::Seconds ZonedClock::now() const { return static_cast<Seconds>(std::floor(preciseNow())); }

double ZonedClock::preciseNow() const {
    @autoreleasepool {
        return [[NSDate date] timeIntervalSince1970];
    }
}

int ZonedClock::utcOffsetSeconds(Seconds at) const {
    @autoreleasepool {
        return static_cast<int>([currentZone() secondsFromGMTForDate:dateOf(at)]);
    }
}

LocalTime ZonedClock::localTime(Seconds at) const {
    @autoreleasepool {
        // A copy: the system may hand the same one to other threads.
        NSCalendar* const calendar = [[[NSCalendar currentCalendar] copy] autorelease];
        [calendar setTimeZone:currentZone()];
        NSDateComponents* const parts =
            [calendar components:NSCalendarUnitHour | NSCalendarUnitMinute | NSCalendarUnitSecond fromDate:dateOf(at)];
        return {static_cast<int>([parts hour]), static_cast<int>([parts minute]), static_cast<int>([parts second])};
    }
}

}  // namespace vantor

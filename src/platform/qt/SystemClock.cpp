#include "platform/qt/SystemClock.h"

#include <time.h>

#include <chrono>
#include <thread>

namespace vantor {

namespace {

tm localCalendar(Clock::Seconds at) {
    tm calendar{};
    const time_t moment = at;
    // localtime_r alone keeps the zone of its first call
    tzset();
    localtime_r(&moment, &calendar);
    return calendar;
}

}  // namespace

Clock::Seconds SystemClock::now() const { return time(nullptr); }

double SystemClock::preciseNow() const {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

int SystemClock::utcOffsetSeconds(Seconds at) const { return static_cast<int>(localCalendar(at).tm_gmtoff); }

LocalTime SystemClock::localTime(Seconds at) const {
    const tm calendar = localCalendar(at);
    return {calendar.tm_hour, calendar.tm_min, calendar.tm_sec};
}

void SystemPause::wait(std::chrono::microseconds duration) {
    // a deadline, so that an interrupted sleep is taken up again and the wait is never shorter
    std::this_thread::sleep_until(std::chrono::steady_clock::now() + duration);
}

}  // namespace vantor

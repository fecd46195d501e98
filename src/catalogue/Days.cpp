#include "catalogue/Days.h"

#include <QtCore/QDate>
#include <array>

namespace vantor {

namespace {

constexpr Clock::Seconds secondsPerDay = 24 * 60 * 60;

// The texts are English whatever the desktop speaks.
constexpr std::array months{"January", "February", "March",     "April",   "May",      "June",
                            "July",    "August",   "September", "October", "November", "December"};

QDate dateOf(const std::string& day) {
    return day.size() == 10 ? QDate::fromString(QString::fromStdString(day), Qt::ISODate) : QDate();
}

}  // namespace

std::optional<std::int64_t> dayNumber(const std::string& day) {
    const QDate date = dateOf(day);
    if (!date.isValid()) return std::nullopt;
    return QDate(1970, 1, 1).daysTo(date);
}

std::int64_t dayNumber(Clock::Seconds moment) { return moment / secondsPerDay - (moment % secondsPerDay < 0 ? 1 : 0); }

std::string dayText(const std::string& day, bool withYear) {
    const QDate date = dateOf(day);
    if (!date.isValid()) return day;
    return std::to_string(date.day()) + " " + months[static_cast<std::size_t>(date.month() - 1)] +
           (withYear ? " " + std::to_string(date.year()) : "");
}

}  // namespace vantor

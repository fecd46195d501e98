#include "app/cli/Moment.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QTimeZone>

namespace vantor {

std::optional<Moment> parseMoment(std::string_view text) {
    const QString given = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    // The class would also read a date from the front of a longer text.
    constexpr qsizetype dateLength = 10;
    if (const QDate date = QDate::fromString(given, Qt::ISODate); date.isValid() && given.size() == dateLength)
        return Moment{QDateTime(date, QTime(0, 0), QTimeZone::utc()).toSecsSinceEpoch(), std::nullopt};
    // Read as if it were UTC: a local time that a clock change skips would be moved.
    if (const auto local = QDateTime::fromString(given + QLatin1Char('Z'), Qt::ISODate); local.isValid())
        return Moment{local.toSecsSinceEpoch(), std::nullopt};
    const auto zoned = QDateTime::fromString(given, Qt::ISODate);
    if (!zoned.isValid() || zoned.timeSpec() == Qt::LocalTime) return std::nullopt;
    return Moment{zoned.toSecsSinceEpoch() + zoned.offsetFromUtc(), zoned.offsetFromUtc()};
}

Clock::Seconds resolve(const Moment& moment, const Clock& zone) {
    if (moment.offsetSeconds) return moment.calendarSeconds - *moment.offsetSeconds;
    // A day to either side is beyond every offset, so these two are the offsets around a change that falls on this
    // date.
    constexpr Clock::Seconds day = 86400;
    const Clock::Seconds before = moment.calendarSeconds - zone.utcOffsetSeconds(moment.calendarSeconds - day);
    const Clock::Seconds after = moment.calendarSeconds - zone.utcOffsetSeconds(moment.calendarSeconds + day);
    const auto readsBack = [&](Clock::Seconds at) { return at + zone.utcOffsetSeconds(at) == moment.calendarSeconds; };
    return !readsBack(before) && readsBack(after) ? after : before;
}

}  // namespace vantor

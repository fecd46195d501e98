#include "app/cli/Moment.h"

#include <chrono>

namespace vantor {

namespace {

// Takes what it recognises from the front of a text.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }
    bool take(char wanted) {
        if (rest_.empty() || rest_.front() != wanted) return false;
        rest_.remove_prefix(1);
        return true;
    }
    // Exactly this many decimal digits.
    std::optional<int> number(std::size_t digits, int greatest) {
        if (rest_.size() < digits) return std::nullopt;
        int value = 0;
        for (const char digit : rest_.substr(0, digits)) {
            if (digit < '0' || digit > '9') return std::nullopt;
            value = value * 10 + (digit - '0');
        }
        if (value > greatest) return std::nullopt;
        rest_.remove_prefix(digits);
        return value;
    }
    bool skipDigits() {
        const std::size_t before = rest_.size();
        while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') rest_.remove_prefix(1);
        return rest_.size() < before;
    }

private:
    std::string_view rest_;
};

std::optional<std::int64_t> readDate(Reader& reader) {
    const auto year = reader.number(4, 9999);
    if (!year || !reader.take('-')) return std::nullopt;
    const auto month = reader.number(2, 12);
    if (!month || !reader.take('-')) return std::nullopt;
    const auto day = reader.number(2, 31);
    if (!day) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok()) return std::nullopt;
    return std::chrono::seconds(std::chrono::sys_days(date).time_since_epoch()).count();
}

std::optional<std::int64_t> readTime(Reader& reader) {
    const auto hour = reader.number(2, 23);
    if (!hour || !reader.take(':')) return std::nullopt;
    const auto minute = reader.number(2, 59);
    if (!minute) return std::nullopt;
    int second = 0;
    if (reader.take(':')) {
        const auto read = reader.number(2, 59);
        if (!read) return std::nullopt;
        second = *read;
        if (reader.take('.') && !reader.skipDigits()) return std::nullopt;
    }
    return (*hour * 60 + *minute) * 60 + second;
}

std::optional<std::int32_t> readOffset(Reader& reader) {
    if (reader.take('Z')) return 0;
    const bool west = reader.take('-');
    if (!west && !reader.take('+')) return std::nullopt;
    const auto hours = reader.number(2, 23);
    if (!hours) return std::nullopt;
    int minutes = 0;
    const bool colon = reader.take(':');
    if (colon || !reader.atEnd()) {
        const auto read = reader.number(2, 59);
        if (!read) return std::nullopt;
        minutes = *read;
    }
    const int seconds = (*hours * 60 + minutes) * 60;
    return west ? -seconds : seconds;
}

}  // namespace

std::optional<Moment> parseMoment(std::string_view text) {
    Reader reader(text);
    const auto date = readDate(reader);
    if (!date) return std::nullopt;
    Moment moment{*date, std::nullopt};
    if (reader.atEnd()) return moment;

    if (!reader.take('T') && !reader.take(' ')) return std::nullopt;
    const auto time = readTime(reader);
    if (!time) return std::nullopt;
    moment.calendarSeconds += *time;
    if (reader.atEnd()) return moment;

    moment.offsetSeconds = readOffset(reader);
    if (!moment.offsetSeconds || !reader.atEnd()) return std::nullopt;
    return moment;
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

// Any arguments (between zero bytes): parsed alike each time, or refused with one line that repeats no value, since one
// may be a secret. A moment means the date and time that were written. A setting's value is written as text and read
// back equal, and --set stores all or nothing.

#include <QString>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <sstream>

#include "Finding.h"
#include "app/Settings.h"
#include "app/cli/CommandLine.h"
#include "app/cli/Moment.h"
#include "app/cli/SettingsCommand.h"
#include "data/Decoder.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"

namespace vantor::fuzz {
namespace {

constexpr const char* secret = "S3cr3t";

std::optional<std::string> noEnvironment(const char*) { return std::nullopt; }

std::string text(std::int64_t calendarSeconds) {
    const std::chrono::sys_seconds moment{std::chrono::seconds(calendarSeconds)};
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(moment - day);
    char out[48];
    std::snprintf(out, sizeof out, "%04d-%02u-%02uT%02ld:%02ld:%02ld", int(date.year()), unsigned(date.month()),
                  unsigned(date.day()), long(time.hours().count()), long(time.minutes().count()),
                  long(time.seconds().count()));
    return out;
}

void moments(const std::string& given) {
    const auto moment = parseMoment(given);
    if (!moment) return;
    std::string full = given;
    if (full.size() > 10 && full[10] == ' ') full[10] = 'T';
    const std::string canonical = text(moment->calendarSeconds);
    require(canonical.starts_with(full.substr(0, std::min<std::size_t>(full.size(), 16))),
            "a moment is the date and time that were written", given + " is " + canonical);
    require(parseMoment(canonical) == Moment{moment->calendarSeconds, std::nullopt}, "its full form reads the same");
    require(parseMoment(canonical + "Z") == Moment{moment->calendarSeconds, 0}, "Z is no offset");
    for (const int offset : {-43200, 0, 20700, 50400}) {
        const auto at = resolve(*moment, FakeClock(0, offset));
        require(at == moment->calendarSeconds - moment->offsetSeconds.value_or(offset), "a moment is resolved");
    }
}

void values(const std::string& given) {
    for (const Setting& setting : allSettings()) {
        const auto value = parseSetting(setting, given);
        if (!value) {
            require(setting.type != SettingType::text, "any text is a text");
            continue;
        }
        if (const auto* number = std::get_if<double>(&*value))
            require(std::isfinite(*number), "a number is finite", given);
        const std::string formatted = formatSetting(*value);
        require(parseSetting(setting, formatted) == value, "a setting reads back from its text", given);
    }
}

void settings(const ChangeSettings& request, const std::string& input) {
    FakeDefaults defaults;
    std::istringstream in(input + secret);
    std::ostringstream err;
    const int status = runChangeSettings(request, defaults, in, err);
    require(status == 0 ? err.str().empty() : defaults.writes() == 0, "all settings are stored or none");
    require(err.str().find(secret) == std::string::npos, "no line repeats a value", err.str());
    require(status == 0 || (err.str().find('\n') == err.str().size() - 1), "one line for an error", err.str());
    for (const SettingChange& change : request.changes) {
        std::ostringstream out;
        const int printed = runPrintSetting({change.key}, defaults, out, err);
        require(printed == (status == 0 ? 0 : findSetting(change.key) ? 1 : usageStatus), "what is stored is printed");
        require(printed == 0 || out.str().empty(), "nothing is printed of what is not there");
    }
}

void arguments(const std::vector<std::string>& given) {
    const auto parsed = parseCommandLine(given, noEnvironment);
    require(parsed == parseCommandLine(given, noEnvironment), "equal arguments are parsed alike");
    if (const auto* wrong = std::get_if<UsageError>(&parsed)) {
        require(wrong->line.starts_with("vantor: ") && !holdsControlCharacter(wrong->line), "a refusal is one line",
                wrong->line);
    } else if (const auto* request = std::get_if<ChangeSettings>(&std::get<CommandLine>(parsed).command)) {
        require(!request->changes.empty(), "--set changes something");
        settings(*request, given.back());
    } else if (const auto* timeline = std::get_if<PrintTimeline>(&std::get<CommandLine>(parsed).command)) {
        if (timeline->now) (void)resolve(*timeline->now, FakeClock());
    }
}

// The same arguments with a secret in each place that an option's name is not.
void secrets(std::vector<std::string> given) {
    for (std::string& each : given) {
        const auto equals = each.find('=');
        if (equals != std::string::npos)
            each.insert(equals + 1, secret);
        else if (!each.starts_with("--"))
            each += secret;
    }
    const auto parsed = parseCommandLine(given, noEnvironment);
    if (const auto* wrong = std::get_if<UsageError>(&parsed))
        require(wrong->line.find(secret) == std::string::npos, "no refusal repeats a value", wrong->line);
    else if (const auto* request = std::get_if<ChangeSettings>(&std::get<CommandLine>(parsed).command))
        if (std::ranges::none_of(request->changes,
                                 [](const auto& change) { return change.key.find(secret) != std::string::npos; }))
            settings(*request, given.back());
}

}  // namespace
}  // namespace vantor::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) { return vantor::fuzz::reportDescriptor() < 0 ? 1 : 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor::fuzz;
    Input input(data, size);
    if (input.rest().find(secret) != std::string_view::npos) return 0;
    std::vector<std::string> given;
    while (!input.atEnd()) given.push_back(input.until('\0'));
    arguments(given);
    secrets(given);
    for (const std::string& each : given) {
        moments(each);
        values(each);
        values(each.substr(each.find('=') + 1));
        moments(each.substr(each.find('=') + 1));
    }
    return 0;
}

// Any arguments (between zero bytes): parsed alike each time, or refused with one line that repeats no value, since one
// may be a secret. A moment is resolved by its own offset. A setting's value is written as text and read back equal,
// and
// --set stores all or nothing.

#include <sstream>

#include "Fuzz.h"
#include "app/Settings.h"
#include "app/cli/CommandLine.h"
#include "app/cli/Moment.h"
#include "app/cli/SettingsCommand.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"

namespace vantor::fuzz {
namespace {

constexpr const char* secret = "S3cr3t";

void requireNoSecret(const std::string& line) {
    require(line.find(secret) == std::string::npos, "no line repeats a value", line);
}

void values(const std::string& given) {
    if (const auto moment = parseMoment(given))
        for (const int offset : {-43200, 0, 20700, 50400})
            require(resolve(*moment, FakeClock(0, offset)) ==
                        moment->calendarSeconds - moment->offsetSeconds.value_or(offset),
                    "a moment is resolved", given);
    for (const Setting& setting : allSettings()) {
        const auto value = parseSetting(setting, given);
        require(value || setting.type != SettingType::text, "any text is a text");
        if (value) require(parseSetting(setting, formatSetting(*value)) == value, "a setting reads back", given);
    }
}

void store(const ChangeSettings& request, const std::string& input) {
    FakeDefaults defaults;
    std::istringstream in(input + secret);
    std::ostringstream err;
    const int status = runChangeSettings(request, defaults, in, err);
    requireNoSecret(err.str());
    require(status == 0 ? err.str().empty() : defaults.writes() == 0 && err.str().find('\n') + 1 == err.str().size(),
            "all settings are stored, or none and one line", err.str());
    for (const SettingChange& change : request.changes) {
        std::ostringstream out;
        const int printed = runPrintSetting({change.key}, defaults, out, err);
        require(printed == (status == 0 ? 0 : findSetting(change.key) ? 1 : usageStatus), "what is stored is printed");
    }
}

void parse(const std::vector<std::string>& given) {
    const auto parsed = parseCommandLine(given, [](const char*) { return std::optional<std::string>(); });
    if (const auto* wrong = std::get_if<UsageError>(&parsed)) {
        requireLine(wrong->line, "a refusal is one line");
        requireNoSecret(wrong->line);
    } else if (const auto* request = std::get_if<ChangeSettings>(&std::get<CommandLine>(parsed).command)) {
        for (const SettingChange& change : request->changes)
            if (change.key.find(secret) != std::string::npos) return;
        store(*request, given.back());
    }
}

}  // namespace

void run(Input input) {
    if (input.rest().find(secret) != std::string_view::npos) return;
    std::vector<std::string> given;
    while (!input.atEnd()) given.push_back(input.until('\0'));
    for (const std::string& each : given) {
        values(each);
        values(each.substr(each.find('=') + 1));
    }
    parse(given);
    // The same with a secret in each place that an option's name is not.
    for (std::string& each : given)
        if (const auto equals = each.find('='); equals != std::string::npos)
            each.insert(equals + 1, secret);
        else if (!each.starts_with("--"))
            each += secret;
    parse(given);
}

}  // namespace vantor::fuzz

#include "app/cli/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <time.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "app/cli/SettingsCommand.h"
#include "app/cli/TimelineCommand.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "platform/qt/SystemClock.h"

namespace vantor {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using Arguments = std::vector<std::string>;

std::variant<CommandLine, UsageError> parsed(const Arguments& arguments,
                                             const std::map<std::string, std::string>& environment = {}) {
    return parseCommandLine(arguments, [&](const char* name) {
        const auto found = environment.find(name);
        return found == environment.end() ? std::nullopt : std::optional(found->second);
    });
}

TEST(CommandLine, IsReadIntoOneCommand) {
    struct {
        Arguments arguments;
        Command command;
    } const table[] = {
        {{}, StartProgram{}},
        {{"--version"}, ShowVersion{}},
        {{"--doctor"}, RunDoctor{}},
        {{"--timeline", "--help"}, ShowHelp{}},
        {{"--timeline"}, PrintTimeline{}},
        {{"--window", "--now=2026-03-29T01:30", "--json", "--timeline", "--catalogue", "a=b.json"},
         PrintTimeline{true, true, "a=b.json", Moment{1774747800, std::nullopt}}},
        {{"--key-map", "--json"}, PrintKeyMap{true}},
        {{"--type", "--help"}, TypeText{"--help"}},
        {{"--type="}, TypeText{""}},
        {{"--type", "-"}, TypeText{std::nullopt}},
        {{"--press", "⌃ + ⇧ + F1"}, PressText{"⌃ + ⇧ + F1"}},
        {{"--get", "api.key"}, PrintSetting{"api.key"}},
        {{"--toggle-app"}, AskRunning{AskRunning::What::toggleApp}},
        {{"--quit"}, AskRunning{AskRunning::What::quit}},
        {{"--fill", "-"}, AskRunning{AskRunning::What::fill}},  // from standard input
        {{"--fill="}, AskRunning{AskRunning::What::fill, ""}},
        {{"--set", "api.key=-", "--set=timer.isTimer=true", "--set", "events.watching=a=b"},
         ChangeSettings{{{"api.key", std::nullopt}, {"timer.isTimer", "true"}, {"events.watching", "a=b"}}}},
    };
    for (const auto& row : table) {
        const auto result = parsed(row.arguments);
        SCOPED_TRACE(::testing::PrintToString(row.arguments));
        ASSERT_TRUE(std::holds_alternative<CommandLine>(result)) << std::get<UsageError>(result).line;
        EXPECT_TRUE(std::get<CommandLine>(result).command == row.command);
    }
}

TEST(CommandLine, RefusesWhatItDoesNotKnowInOneLineThatRepeatsNoValue) {
    const Arguments table[] = {
        {"--frobnicate"},
        {"--frobnicate=SECRET"},
        {"-platform"},
        {"SECRET"},
        {"--type", "hello", "SECRET"},
        {"--type"},
        {"--fill"},
        {"--quit", "--toggle-app"},
        {"--set", "SECRET"},
        {"--set", "=SECRET"},
        {"--set", "api.key=-", "--set", "events.watching=-"},
        {"--version=SECRET"},
        {"--now", "SECRET", "--timeline"},
        {"--json"},
        {"--window", "--key-map"},
        {"--catalogue", "SECRET", "--doctor"},
        {"--timeline", "--timeline"},
        {"--timeline", "--get", "SECRET"},
        {"--settings", ""},
        {"--api-host", "ftp://SECRET"},
        {"--api-host", "https://"},
        {"--static-files", "SECRET"},
        {"--two\nlines"},
    };
    for (const Arguments& arguments : table) {
        const auto result = parsed(arguments);
        SCOPED_TRACE(::testing::PrintToString(arguments));
        ASSERT_TRUE(std::holds_alternative<UsageError>(result));
        EXPECT_THAT(std::get<UsageError>(result).line, MatchesRegex("vantor: [^\n]+; see vantor --help"));
        EXPECT_THAT(std::get<UsageError>(result).line, Not(HasSubstr("SECRET")));
    }
}

TEST(CommandLine, TakesItsOverridesFromOptionsBeforeTheEnvironment) {
    const auto result = parsed({"--static-files", "qrc:/other", "--doctor", "--settings", "mine"},
                               {{"VANTOR_API_HOST", "http://127.0.0.1:8080"},
                                {"VANTOR_STATIC_FILES", "https://files.example"},
                                {"VANTOR_SETTINGS", "theirs"}});
    EXPECT_EQ(std::get<CommandLine>(result).overrides, (Overrides{"mine", "http://127.0.0.1:8080", "qrc:/other"}));
    EXPECT_TRUE(std::holds_alternative<UsageError>(parsed({}, {{"VANTOR_API_HOST", "nowhere"}})));
}

TEST(Moment, IsReadFromIso8601) {
    struct {
        std::string_view text;
        std::optional<Moment> moment;
    } const table[] = {
        {"1970-01-01", Moment{0, std::nullopt}},
        {"1970-01-02T00:00", Moment{86400, std::nullopt}},
        {"1970-01-01 00:01:02.999", Moment{62, std::nullopt}},
        {"1969-12-31T23:59:59Z", Moment{-1, 0}},
        {"1970-01-01T00:00+05:45", Moment{0, 20700}},
        {"1970-01-01T00:00-0330", Moment{0, -12600}},
        {"1970-01-01T00:00+14", Moment{0, 50400}},
        {"2024-02-29", Moment{1709164800, std::nullopt}},
        {"2026-02-29", {}},
        {"1970-01-01T24:00", Moment{86400, std::nullopt}},
        {"2026-01-01T12:", {}},
        {"2026-01-01T12:00:00.", {}},
        {"2026-01-01T12:00Zulu", {}},
        {"", {}},
    };
    for (const auto& row : table) EXPECT_EQ(parseMoment(row.text), row.moment) << row.text;
}

// The process's zone, put back at the end.
class ZoneScope {
public:
    explicit ZoneScope(const char* zone) {
        if (const char* old = std::getenv("TZ")) before_ = old;
        setenv("TZ", zone, 1);
    }
    ~ZoneScope() {
        before_ ? setenv("TZ", before_->c_str(), 1) : unsetenv("TZ");
        tzset();
    }

private:
    std::optional<std::string> before_;
};

TEST(SystemClock, FollowsTheZoneAndResolvesLocalMoments) {
    const SystemClock clock;
    struct {
        const char* zone;
        const char* text;
        Clock::Seconds at;
        int offset;
        LocalTime local;
    } const table[] = {
        {"Europe/Berlin", "2026-03-29T01:59:59", 1774745999, 3600, {1, 59, 59}},
        {"Europe/Berlin", "2026-03-29T02:30", 1774747800, 7200, {3, 30, 0}},  // skipped
        {"Europe/Berlin", "2026-10-25T02:30", 1792888200, 7200, {2, 30, 0}},  // the first of two
        {"Asia/Kathmandu", "2026-11-22T10:00", 1795320900, 20700, {10, 0, 0}},
        {"America/St_Johns", "2026-11-22T10:00Z", 1795341600, -12600, {6, 30, 0}},
        {"Australia/Lord_Howe", "2026-10-04T02:10", 1791042000, 39600, {2, 40, 0}},  // half an hour is skipped
        {"Etc/GMT+12", "2026-11-22T10:00", 1795384800, -43200, {10, 0, 0}},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(std::string(row.zone) + " " + row.text);
        const ZoneScope zone(row.zone);
        const auto moment = parseMoment(row.text);
        ASSERT_TRUE(moment);
        EXPECT_EQ(resolve(*moment, clock), row.at);
        EXPECT_EQ(clock.utcOffsetSeconds(row.at), row.offset);
        EXPECT_EQ(clock.localTime(row.at), row.local);
    }
    EXPECT_NEAR(static_cast<double>(clock.now()), static_cast<double>(time(nullptr)), 2);
}

struct Outcome {
    int status = 0;
    std::string out, err;
};

constexpr std::string_view oneSection =
    R"([{"id": 3, "category": "Core", "name": "Sec \"3\"", "active": true, "segments":
    [{"id": 7, "name": "Boss", "chatlink": "[&BEwCAAA=]", "lfg": 10}, {"id": 8, "name": "Timer"}], "sequences":
    {"partial": [], "pattern": [{"r": 7, "d": 720}, {"r": 8, "d": 720}]}}])";

Outcome timeline(const PrintTimeline& request, std::string_view embedded, const FakeDefaults& defaults = FakeDefaults(),
                 const FakeClock& clock = FakeClock()) {
    std::ostringstream out, err;
    const int status = runTimeline(request, embedded, defaults, clock, out, err);
    return {status, out.str(), err.str()};
}

TEST(TimelineCommand, PrintsTheTimelineAsTheSettingsFilterIt) {
    const FakeClock clock(0, -18000);
    FakeDefaults defaults;
    EXPECT_EQ(timeline({}, oneSection, defaults, clock).out,
              "start   gather  chat link     section: event\n"
              "-4:-59  -5:-9   [&BEwCAAA=]   Sec \"3\": Boss\n"
              "19:00   18:50   [&BEwCAAA=]   Sec \"3\": Boss\n");

    defaults.put("timer.isEvent", false);
    defaults.put("timer.isTimer", std::string("true"));
    EXPECT_EQ(timeline({.json = true}, oneSection, defaults, clock).out, "[\n]\n") << "a text is no boolean";
    defaults.put("timer.isTimer", true);
    EXPECT_THAT(timeline({.json = true}, oneSection, defaults, clock).out,
                AllOf(HasSubstr("\"name\": \"Timer\""), HasSubstr("\"chatlink\": null")));
}

TEST(TimelineCommand, KeepsTheVisibleWindowOfTheMomentAsked) {
    FakeDefaults defaults;
    const PrintTimeline atFour{.windowOnly = true, .now = parseMoment("2026-11-22T21:00")};
    const std::string header = "start   gather  chat link     section: event\n";
    const std::string boss = "00:00   23:50   [&BEwCAAA=]   Sec \"3\": Boss\n";
    EXPECT_EQ(timeline(atFour, oneSection, defaults).out, header + boss);
    defaults.put("timer.windowDuration", 2.8);
    EXPECT_EQ(timeline(atFour, oneSection, defaults).out, header);
    defaults.put("timer.windowDuration", std::string("1"));
    EXPECT_EQ(timeline(atFour, oneSection, defaults).out, header + boss) << "a text is no number";
}

TEST(TimelineCommand, NamesWhatIsWrongInOneLine) {
    const std::string folder = ::testing::TempDir();
    const std::string broken = folder + "vantor-broken-catalogue.json";
    std::ofstream(broken) << R"([{"id": 1, "name": "x"}])";
    const std::string stepWithoutEvent =
        R"([{"id": 3, "category": "", "name": "Ley\nLine", "active": true, "segments": [],
        "sequences": {"partial": [], "pattern": [{"r": 7, "d": 1}]}}])";
    const std::string farAway = R"([{"id": 3, "category": "", "name": "Far", "active": true, "segments":
        [{"id": 1, "name": "", "chatlink": ""}], "sequences": {"partial": [{"r": 1, "d": 9223372036854775807}],
        "pattern": [{"r": 1, "d": 0}]}}])";
    struct {
        std::string catalogueFile;  // empty: the embedded catalogue
        std::string_view embedded;
        int status;
        std::string line;
    } const table[] = {
        {folder + "no-such-file", oneSection, 1, "vantor: the catalogue .* cannot be read\n"},
        {folder, oneSection, 1, "vantor: the catalogue .* cannot be read\n"},
        {broken, oneSection, 1, "Error filling Array<EventsSection>: .0..category: missing\n"},
        {"", "", 1, "Error filling Array<EventsSection>: [^\n]+\n"},
        {"", stepWithoutEvent, 70, "vantor: [^\n]*section 3 \"Ley Line\", sequences.pattern.0.: [^\n]+\n"},
        {"", farAway, 70, "vantor: [^\n]*section 3 \"Far\", event 1: [^\n]+\n"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.line);
        PrintTimeline request;
        if (!row.catalogueFile.empty()) request.catalogueFile = row.catalogueFile;
        const auto outcome = timeline(request, row.embedded);
        EXPECT_EQ(outcome.status, row.status);
        EXPECT_THAT(outcome.err, MatchesRegex(row.line));
        EXPECT_EQ(outcome.out, "");
    }
    std::remove(broken.c_str());
}

Outcome change(const std::vector<SettingChange>& changes, FakeDefaults& defaults, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream err;
    const int status = runChangeSettings({changes}, defaults, in, err);
    return {status, {}, err.str()};
}

TEST(SettingsCommand, StoresEachValueByTheTypeOfItsKey) {
    FakeDefaults defaults;
    EXPECT_EQ(change({{"timer.isTimer", "true"}, {"timer.windowDuration", "2.5"}, {"api.key", std::nullopt}}, defaults,
                     "AB CD\r\n")
                  .status,
              0);
    EXPECT_EQ(defaults.value("timer.isTimer"), SettingValue(true));
    EXPECT_EQ(defaults.value("timer.windowDuration"), SettingValue(2.5));
    EXPECT_EQ(defaults.value("api.key"), SettingValue(std::string("AB CD")));

    std::ostringstream out, err;
    EXPECT_EQ(runPrintSetting({"timer.windowDuration"}, defaults, out, err), 0);
    EXPECT_EQ(runPrintSetting({"general.pasteClipoard"}, defaults, out, err), 1);
    EXPECT_EQ(out.str(), "2.5\n");
    EXPECT_EQ(err.str(), "");
    EXPECT_EQ(runPrintSetting({"general.pasteClipboard"}, defaults, out, err), 2);
    EXPECT_EQ(err.str(), "vantor: there is no setting general.pasteClipboard\n");
}

TEST(SettingsCommand, StoresNothingWhenOneChangeIsWrong) {
    FakeDefaults defaults;
    const auto unknown = change({{"timer.isTimer", "true"}, {"no.key", "SECRET"}}, defaults);
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.err, "vantor: there is no setting no.key\n");
    const auto noBoolean = change({{"timer.isEvent", "true"}, {"timer.isTimer", "SECRET"}}, defaults);
    EXPECT_EQ(noBoolean.status, 2);
    EXPECT_EQ(noBoolean.err, "vantor: timer.isTimer takes true or false\n");
    EXPECT_EQ(change({{"timer.windowDuration", std::nullopt}}, defaults, "nan\n").status, 2);
    EXPECT_EQ(defaults.writes(), 0);

    defaults.failAtWrite(1);
    const auto refused = change({{"api.key", "SECRET"}}, defaults);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "vantor: api.key could not be stored\n");
}

}  // namespace
}  // namespace vantor

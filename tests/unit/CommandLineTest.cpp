// What the command line and the texts of settings mean, and the commands that print and store.

#include "app/cli/CommandLine.h"

#include <gmock/gmock.h>
#include <time.h>

#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>

#include "app/EnabledApplications.h"
#include "app/Settings.h"
#include "app/cli/DoctorCommand.h"
#include "app/cli/SettingsCommand.h"
#include "app/cli/TimelineCommand.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "platform/qt/SystemClock.h"

namespace vantor {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using Arguments = std::vector<std::string>;

std::variant<CommandLine, UsageError> parsed(const Arguments& arguments,
                                             const std::map<std::string, std::string>& environment = {}) {
    return parseCommandLine(arguments, [&](const char* name) {
        const auto found = environment.find(name);
        return found == environment.end() ? std::nullopt : std::optional(found->second);
    });
}

// A variable of the process's surroundings, put back at the end.
class Variable {
public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) before_ = old;
        setenv(name, value, 1);
    }
    ~Variable() {
        before_ ? setenv(name_, before_->c_str(), 1) : unsetenv(name_);
        tzset();
    }

private:
    const char* name_;
    std::optional<std::string> before_;
};

TEST(CommandLine, IsReadIntoOneCommand) {
    const std::pair<Arguments, Command> table[] = {
        {{}, StartProgram{}},
        {{"--version"}, ShowVersion{}},
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
        {{"--toggle"}, AskRunning{AskRunning::What::toggle}},
        {{"--hide"}, AskRunning{AskRunning::What::hide}},
        {{"--show"}, AskRunning{AskRunning::What::show}},
        {{"--paste"}, AskRunning{AskRunning::What::paste}},
        {{"--emote", "👋"}, AskRunning{AskRunning::What::emote, "👋"}},
        {{"--stop"}, AskRunning{AskRunning::What::stop}},
        {{"--set", "api.key=-", "--set=timer.isTimer=true", "--set", "events.watching=a=b"},
         ChangeSettings{{{"api.key", std::nullopt}, {"timer.isTimer", "true"}, {"events.watching", "a=b"}}}},
    };
    for (const auto& [arguments, command] : table) {
        const auto result = parsed(arguments);
        SCOPED_TRACE(testing::PrintToString(arguments));
        ASSERT_TRUE(std::holds_alternative<CommandLine>(result)) << std::get<UsageError>(result).line;
        EXPECT_TRUE(std::get<CommandLine>(result).command == command);
    }
}

TEST(CommandLine, RefusesWhatItDoesNotKnowInOneLineThatRepeatsNoValue) {
    const Arguments table[] = {
        {"--frobnicate=SECRET"},
        {"-platform"},
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
        SCOPED_TRACE(testing::PrintToString(arguments));
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
    const Variable empty("VANTOR_SETTINGS", "");
    EXPECT_EQ(environmentVariable("VANTOR_SETTINGS"), std::nullopt);
    const Variable full("VANTOR_SETTINGS", "mine");
    EXPECT_EQ(environmentVariable("VANTOR_SETTINGS"), "mine");
}

TEST(Moment, IsReadFromIso8601) {
    const std::pair<std::string_view, std::optional<Moment>> table[] = {
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
        {"2026-01-01 and more", {}},
        {"2026-01-01T12:00:00.", {}},
        {"2026-01-01T12:00Zulu", {}},
        {"", {}},
    };
    for (const auto& [text, moment] : table) EXPECT_EQ(parseMoment(text), moment) << text;
}

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
        {"Europe/Berlin", "2026-03-29T10:00", 1774771200, 7200, {10, 0, 0}},
        {"Europe/Berlin", "2026-10-25T02:30", 1792888200, 7200, {2, 30, 0}},  // the first of two
        {"Asia/Kathmandu", "2026-11-22T10:00", 1795320900, 20700, {10, 0, 0}},
        {"America/St_Johns", "2026-11-22T10:00Z", 1795341600, -12600, {6, 30, 0}},
        {"Australia/Lord_Howe", "2026-10-04T02:10", 1791042000, 39600, {2, 40, 0}},  // half an hour is skipped
        {"Etc/GMT+12", "2026-11-22T10:00", 1795384800, -43200, {10, 0, 0}},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(std::string(row.zone) + " " + row.text);
        const Variable zone("TZ", row.zone);
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
    const std::string header = "start   gather  chat link     section: event\n";
    EXPECT_EQ(timeline({}, oneSection, defaults, clock).out, header +
                                                                 "-4:-59  -5:-9   [&BEwCAAA=]   Sec \"3\": Boss\n"
                                                                 "19:00   18:50   [&BEwCAAA=]   Sec \"3\": Boss\n");
    // Only what the window of that moment shows.
    const PrintTimeline atFour{.windowOnly = true, .now = parseMoment("2026-11-22T21:00")};
    EXPECT_EQ(timeline(atFour, oneSection, defaults).out, header + "00:00   23:50   [&BEwCAAA=]   Sec \"3\": Boss\n");
    defaults.put("timer.windowDuration", 2.8);
    EXPECT_EQ(timeline(atFour, oneSection, defaults).out, header);

    defaults.put("timer.isEvent", false);
    defaults.put("timer.isTimer", std::string("true"));
    EXPECT_EQ(timeline({.json = true}, oneSection, defaults, clock).out, "[\n]\n") << "a text is no boolean";
    defaults.put("timer.isTimer", true);
    EXPECT_THAT(timeline({}, oneSection, defaults, clock).out,
                HasSubstr("07:00" + std::string(25, ' ') + "Sec \"3\": Timer\n"));
    EXPECT_THAT(timeline({.json = true}, oneSection, defaults, clock).out,
                AllOf(HasSubstr("\"name\": \"Timer\""), HasSubstr("\"chatlink\": null")));
}

TEST(DoctorCommand, WritesATable) {
    EXPECT_EQ(capabilitiesAsText({{CapabilityKind::rawKeys, true, "heard"}, {CapabilityKind::tray, false, "none"}}),
              "raw keys  yes  heard\ntray      no   none\n");
}

TEST(TimelineCommand, NamesWhatIsWrongInOneLine) {
    const std::string folder = testing::TempDir();
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

TEST(SettingsCommand, StoresEachValueByTheTypeOfItsKeyAndNothingWhenOneIsWrong) {
    FakeDefaults defaults;
    const std::pair<std::vector<SettingChange>, std::string> wrong[] = {
        {{{"timer.isTimer", "true"}, {"no.key", "SECRET"}}, "there is no setting no.key"},
        {{{"timer.isEvent", "true"}, {"timer.isTimer", "SECRET"}}, "timer.isTimer takes true or false"},
        {{{"timer.windowDuration", std::nullopt}}, "timer.windowDuration takes a number"},
    };
    for (const auto& [changes, line] : wrong) {
        const auto refused = change(changes, defaults, "nan\n");
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.err, "vantor: " + line + "\n");
    }
    EXPECT_EQ(defaults.writes(), 0);
    defaults.failAtWrite(1);
    const auto notStored = change({{"api.key", "SECRET"}}, defaults);
    EXPECT_EQ(notStored.status, 1);
    EXPECT_EQ(notStored.err, "vantor: api.key could not be stored\n");

    EXPECT_EQ(change({{"timer.windowDuration", "2.5"}, {"api.key", std::nullopt}}, defaults, "AB CD\r\n").status, 0);
    const auto printed = [&](const std::string& key) {
        std::ostringstream out, err;
        const int status = runPrintSetting({key}, defaults, out, err);
        return std::to_string(status) + " " + out.str() + err.str();
    };
    EXPECT_EQ(printed("timer.windowDuration"), "0 2.5\n");
    EXPECT_EQ(printed("api.key"), "0 AB CD\n");
    EXPECT_EQ(printed("general.pasteClipoard"), "1 ");
    EXPECT_EQ(printed("general.pasteClipboard"), "2 vantor: there is no setting general.pasteClipboard\n");
}

using Texts = Arguments;
using Stored = std::optional<SettingValue>;

TEST(Settings, TextIsReadByTheKeysTypeAndWrittenAsItIsRead) {
    const struct {
        const char* key;
        const char* text;
        Stored value;
    } rows[] = {
        {"general.pasteClipoard", "true", true},
        {"general.enableChatLinkReturnKey", "false", false},
        {"timer.isEvent", "yes", {}},
        {"timer.isEvent", "", {}},
        {"timer.windowDuration", "2.5", 2.5},
        {"timer.windowDuration", "0.1", 0.1},
        {"timer.windowDuration", "1e400", {}},
        {"timer.windowDuration", "nan", {}},
        {"timer.windowDuration", "3,5", {}},
        {"timer.watchedWindowDuration", "", {}},
        {"api.key", "true", std::string("true")},
        {"api.key", "", std::string()},
        {"general.windowToggleEvent", "⌘ + ⇧ + T", std::string("⌘ + ⇧ + T")},
        {"apps.enabled", "a, b,,a", Texts{"a", "b", "a"}},
        {"apps.enabled", R"(["a, b", " ", "[", "\"\\", "ü"])", Texts{"a, b", " ", "[", "\"\\", "ü"}},
        {"apps.enabled", " ", Texts{}},
        {"apps.enabled", "[1]", {}},
        {"apps.enabled", "[\"a\"", {}},
    };
    for (const auto& row : rows) {
        const Setting* setting = findSetting(row.key);
        ASSERT_NE(setting, nullptr) << row.key;
        EXPECT_EQ(parseSetting(*setting, row.text), row.value) << row.key << "=" << row.text;
        if (row.value) {
            EXPECT_EQ(parseSetting(*setting, formatSetting(*row.value)), row.value) << row.text;
        }
    }
    const SettingValue most = std::numeric_limits<double>::max();
    EXPECT_EQ(parseSetting(*findSetting("timer.windowDuration"), formatSetting(most)), most);
    for (const char* unknown : {"", "api", "API.key", "general.pasteClipboard", "api.key "})
        EXPECT_EQ(findSetting(unknown), nullptr);
}

TEST(EnabledApplications, AMissingOrEmptyListIsWrittenAnew) {
    const Texts shipped{"net.arena.Guild-Wars-2", "orvendel.Vantor", "com.nvidia.gfnpc.mall"};
    const std::string text = "orvendel.Vantor";  // no list
    for (const Stored& stored : {Stored(), Stored(Texts{}), Stored(text), Stored(Texts{"editor"})}) {
        FakeDefaults defaults;
        if (stored) defaults.put("apps.enabled", *stored);
        const bool own = stored == Stored(Texts{"editor"});
        EXPECT_EQ(isApplicationEnabled(defaults, "editor"), own);
        EXPECT_EQ(isApplicationEnabled(defaults, "com.nvidia.gfnpc.mall"), !own);
        for (const char* other : {"com.nvidia.gfnpc", "orvendel.vantor", ""})
            EXPECT_FALSE(isApplicationEnabled(defaults, other)) << other;
        EXPECT_EQ(defaults.get<Texts>("apps.enabled"), own ? Texts{"editor"} : shipped);
        EXPECT_EQ(defaults.writes(), own ? 0 : 1);
    }
    // A store that refuses changes nothing for the question at hand.
    FakeDefaults full;
    full.failAtWrite(1);
    EXPECT_TRUE(isApplicationEnabled(full, "orvendel.Vantor"));
}

TEST(EnabledApplications, Toggling) {
    const struct {
        std::optional<Texts> stored;
        std::string current;
        Texts left;
    } rows[] = {
        {Texts{"a", "b"}, "c", {"a", "b", "c"}},
        {Texts{"a", "b", "a"}, "a", {"b", "a"}},
        {Texts{"a"}, "", {"a"}},
        // A missing list counts as empty, whatever the test for the game wrote meanwhile.
        {std::nullopt, "c", {"c"}},
        {std::nullopt, "orvendel.Vantor", {}},
        {Texts{}, "orvendel.Vantor", {}},
        {Texts{"orvendel.Vantor"}, "orvendel.Vantor", {}},
    };
    for (const auto& row : rows) {
        FakeDefaults defaults;
        if (row.stored) defaults.put("apps.enabled", *row.stored);
        toggleApplication(defaults, row.current);
        EXPECT_EQ(defaults.get<Texts>("apps.enabled"), row.left) << row.current;
    }
}

}  // namespace
}  // namespace vantor

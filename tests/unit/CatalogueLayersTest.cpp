// The layers over the embedded catalogue: what is taken, what is refused and where, and what the timeline is made of.
#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>
#include <fstream>
#include <sstream>

#include "app/GameData.h"
#include "app/cli/CatalogueCommand.h"
#include "catalogue/CatalogueWords.h"
#include "catalogue/Days.h"
#include "catalogue/LayerCheck.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "timers/OccurrenceRow.h"

namespace vantor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string section(int id, const std::string& name, const std::string& pattern = R"({"r": 1, "d": 120})",
                    const std::string& more = {}) {
    return R"({"id": )" + std::to_string(id) + R"(, "category": "Core", "name": ")" + name +
           R"(", "active": true, "segments": [{"id": 1, "name": ")" + name +
           R"( boss", "chatlink": "[&BEEFAAA=]", "rewards": {"achievements": [)" + std::to_string(1000 + id) +
           R"(]}}], "sequences": {"partial": [], "pattern": [)" + pattern + "]}" + more + "}";
}

std::string list(std::initializer_list<std::string> sections) {
    std::string text;
    for (const std::string& each : sections) text += (text.empty() ? "[" : ",") + each;
    return text + "]";
}

const std::string embedded = list({section(1, "One"), section(2, "Two")});

struct Folder {
    QTemporaryDir folder;
    [[nodiscard]] std::string path(const std::string& name = {}) const {
        return folder.filePath(QString::fromStdString(name)).toStdString();
    }
    void put(const std::string& name, const std::string& contents) const { std::ofstream(path(name)) << contents; }
};

// The loaders over files that answer when told to, from the key to the timeline.
struct Loaded : Folder {
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeDefaults defaults;
    FakeMainThread mainThread;
    FakeClock clock;
    std::vector<std::string> lines;
    std::vector<std::string> stops;
    GameData data{{.defaults = defaults,
                   .session = session,
                   .queue = queue,
                   .mainThread = mainThread,
                   .clock = clock,
                   .hosts = {"https://api.example", "https://files.example"},
                   .printLine = [this](const std::string& line) { lines.push_back(line); },
                   .stop = [this](const std::string& line) { stops.push_back(line); },
                   .catalogue = {.playerFolder = path()}}};

    void start(const std::string& catalogue = embedded) {
        defaults.put(settings::apiKey, std::string("k"));
        data.start();
        queue.runAll();
        (void)session.answer(R"([{"id": 1007, "current": 1, "max": 1, "done": true}])");
        queue.runAll();
        (void)session.answer(catalogue);
        queue.runAll();
    }
    void readAgain() {
        data.readPlayerFiles();
        queue.runAll();
    }
    // The names of the timeline's events in the first minute of the day.
    [[nodiscard]] std::vector<std::string> first() const {
        std::vector<std::string> names;
        for (const auto& each : data.timeline()->events)
            if (each.startMinute == 0) names.push_back(each.event().name);
        return names;
    }
};

}  // namespace

TEST(LayerCheck, NamesWhatIsWrongAndWhere) {
    const std::string day = R"({"r": 1, "d": 1440})";
    const struct {
        std::string body, error;
    } rows[] = {
        {embedded, ""},
        {"[]", ""},
        {list({section(0, "A", day), section(99, "B", day)}), ""},
        {"<html>", "byte "},
        {"{}", "document: no array"},
        {"[" + std::string(largestLayer, ' ') + "]", "document: larger than 1 MiB"},
        {list({section(1, "A"), section(100, "B")}), "[1].id: 100 is not from 0 to 99"},
        {list({section(-1, "A")}), "[0].id: -1 is not"},
        {list({section(7, "A"), section(7, "B")}), "[1].id: 7 is there twice"},
        {list({section(1, "A", R"({"r": 2, "d": 5})")}), "[0].sequences.pattern[0]: the section has no event 2"},
        {list({section(1, "A", R"({"r": 1})")}), "[0].sequences.pattern[0].d: missing"},
        {list({section(1, "A", "")}), "[0].sequences.pattern: does not advance"},
        {list({section(1, "A", R"({"r": 1, "d": 0})")}), "[0].sequences.pattern: does not advance"},
        {list({section(1, "A", R"({"r": 1, "d": 9}, {"r": 1, "d": -1})")}), "[0].sequences.pattern[1].d: below 0"},
        // Overflows in the far east only.
        {list({section(1, "A", R"({"r": 1, "d": 9223372036854775000})")}), "overflows"},
        {list({section(1, "A", R"({"r": 1, "d": 500000}, {"r": 1, "d": 1})")}), ": its times are beyond all days"},
    };
    for (const auto& row : rows) {
        const auto read = readLayer(row.body);
        EXPECT_EQ(read.value.has_value(), row.error.empty()) << row.body.substr(0, 300) << read.error;
        EXPECT_THAT(read.error, HasSubstr(row.error));
    }
    // Inactive ones may become active; a section's events have ids of their own; a day must stay small.
    auto sections = *readLayer(embedded).value;
    sections[1].active = false;
    sections[1].sequences.pattern[0].eventId = 9;
    EXPECT_THAT(layerFault(sections).value_or(""), HasSubstr("[1].sequences.pattern[0]: the section has no event 9"));
    sections[1].segments = {sections[0].segments[0], sections[0].segments[0]};
    EXPECT_THAT(layerFault(sections).value_or(""), HasSubstr("[1].segments[1].id: 1 is there twice"));
    sections[1].segments = {sections[0].segments[0]};
    sections[1].segments[0].lfg = 1441;
    EXPECT_THAT(layerFault(sections).value_or(""), HasSubstr("[1].segments[0].lfg: not from 0 to 1440"));
    sections[1] = sections[0];
    sections[1].id = 2;
    sections[1].sequences.pattern.assign(50, {1, 0});
    sections[1].sequences.pattern.push_back({1, 1});
    EXPECT_THAT(layerFault(sections).value_or(""), HasSubstr("[1].sequences: the day takes more than"));
}

TEST(PlayerFiles, LieOverTheEmbeddedCatalogueSectionBySection) {
    Loaded scene;
    scene.put("b.json", list({section(2, "Mine"), section(7, "New")}));
    scene.put("notes.txt", "no catalogue");
    scene.start();
    EXPECT_THAT(scene.first(), ElementsAre("One boss", "Mine boss", "New boss"));
    EXPECT_THAT(*scene.data.eventsProgress(), testing::SizeIs(1))
        << "the progress follows what the player's file names";
    EXPECT_EQ(playerFilesText(*scene.data.catalogueStatus()), "Your own files: b.json");
    EXPECT_THAT(scene.lines, IsEmpty());

    // Read again by the player's wish alone: a faulty file is named and counts for nothing, whole as it is.
    scene.put("a.json", list({section(1, "First"), section(3, "Third", R"({"r": 4, "d": 9})")}));
    scene.put("c.json", list({section(8, "Eight"), section(7, "Again")}));
    EXPECT_THAT(scene.first(), ElementsAre("One boss", "Mine boss", "New boss"));
    scene.readAgain();
    EXPECT_THAT(scene.first(), ElementsAre("One boss", "Mine boss", "New boss"));
    EXPECT_THAT(scene.data.catalogueStatus()->playerFaults,
                ElementsAre("a.json: [1].sequences.pattern[0]: the section has no event 4",
                            "c.json: [1].id: 7 is in a file before this one"));
    EXPECT_THAT(scene.lines, ElementsAre(HasSubstr("a.json: [1]."), HasSubstr("c.json: [1].id")));

    // Nothing of it is left when the files are gone, and nothing is asked for anew.
    for (const char* name : {"a.json", "b.json", "c.json"}) std::remove(scene.path(name).c_str());
    const auto requests = scene.session.requests().size();
    scene.readAgain();
    EXPECT_THAT(scene.first(), ElementsAre("One boss", "Two boss"));
    EXPECT_EQ(playerFilesText(*scene.data.catalogueStatus()), "Your own files: none is used");
    EXPECT_THAT(scene.data.catalogueStatus()->playerFaults, IsEmpty());
    EXPECT_EQ(scene.session.requests().size(), requests);
}

TEST(PlayerFiles, AddProgressOnWhatTheyNameLater) {
    Loaded scene;
    scene.defaults.put(settings::timerIsEvent, false);
    scene.defaults.put(settings::timerHasAchievements, true);
    scene.start();
    EXPECT_THAT(*scene.data.eventsProgress(), IsEmpty());
    scene.put("mine.json", list({section(7, "Done"), section(8, "Open")}));
    scene.readAgain();
    EXPECT_THAT(*scene.data.eventsProgress(), testing::SizeIs(1));
    EXPECT_THAT(scene.first(), ElementsAre("One boss", "Two boss", "Open boss"));
}

TEST(PlayerFiles, ShowNothingBeforeTheEmbeddedCatalogueIsThereAndDoNotHideItsFaults) {
    Loaded scene;
    scene.put("mine.json", list({section(7, "New")}));
    scene.data.start();  // without a key
    scene.readAgain();
    EXPECT_EQ(scene.data.timeline(), nullptr);

    scene.start(list({section(1, "One", R"({"r": 5, "d": 5})")}));
    EXPECT_THAT(scene.stops, ElementsAre(HasSubstr("section 1 \"One\", sequences.pattern[0]")));
    // A section of the player's mends it.
    scene.put("mine.json", list({section(1, "Mended")}));
    scene.readAgain();
    EXPECT_THAT(scene.first(), ElementsAre("Mended boss"));
}

TEST(Festivals, AreShownFromTheirFirstDayToTheirLast) {
    constexpr Clock::Seconds day = 24 * 60 * 60;
    const auto october12 = *dayNumber("2026-10-12") * day;
    const std::string dates = R"(, "from": "2026-10-13", "until": "2026-11-03", "note": "by the wiki")";
    Loaded scene;
    std::string festival = section(90, "Halloween", R"({"r": 1, "d": 120})", dates);
    festival.replace(festival.find("Core"), 4, "Special Events");
    festival.replace(festival.find("true"), 4, "false");
    scene.clock.set(october12);
    scene.start(list({section(1, "One"), festival}));
    const struct {
        Clock::Seconds after;
        bool shown, ahead;
    } rows[] = {{0, false, true},
                {day - 1, false, true},
                {day, true, true},
                {23 * day - 1, true, true},
                {23 * day, false, false}};
    for (const auto& row : rows) {
        scene.clock.set(october12 + row.after);
        scene.data.followZone();
        scene.queue.runAll();
        EXPECT_EQ(scene.first().size() == 2, row.shown) << row.after;
        EXPECT_EQ(scene.data.catalogueStatus()->festivals, row.ahead) << row.after;
    }
    scene.clock.set(october12 + 2 * day);
    scene.data.followZone();
    scene.queue.runAll();
    EXPECT_EQ(occurrenceRow(scene.data.timeline()->events[1], RowPhase::later, 0, false).place,
              "Halloween · Special Events · by the wiki");

    // One that has no dates is not on, and a day that is none is a fault.
    Loaded without;
    without.start();
    EXPECT_EQ(festivalsText(*without.data.catalogueStatus()),
              "No festival has dates in this catalogue, so none is shown");
    festival.replace(festival.find("2026-10-13"), 10, "13.10.2026");
    EXPECT_EQ(readLayer(list({festival})).error, "[0].from: no day such as 2026-10-13");
}

TEST(CatalogueWords, SayHowOldTheTimesAreOnceTheirDaysAreOver) {
    const auto moment = [](const char* day) { return *dayNumber(day) * 24 * 60 * 60 + 60; };
    const CatalogueFacts facts{7, "2026-09-03", "2026-12-01"};
    EXPECT_EQ(agedText(facts, moment("2026-12-01")), "");
    EXPECT_EQ(agedText(facts, moment("2026-12-02")), "times of 3 September");
    EXPECT_EQ(agedText(facts, moment("2027-01-01")), "times of 3 September 2026");
    EXPECT_EQ(agedText({7, "", "2026-12-01"}, moment("2026-12-02")), "times of 1 December");
    EXPECT_EQ(agedText({}, moment("2026-12-02")), "");
    EXPECT_EQ(agedText(facts, 0), "") << "in 1970 nothing is old";
    EXPECT_EQ(dayNumber(Clock::Seconds{-1}), -1);
}

TEST(CatalogueCheckCommand, TellsTheFaultOrTheDifferences) {
    Folder folder;
    folder.put("good.json", list({section(1, "One"), section(2, "Two", R"({"r": 1, "d": 720})"), section(5, "Five")}));
    folder.put("bad.json", list({section(1, "One", "")}));
    const struct {
        std::string file;
        int status;
        std::string out, err;
    } rows[] = {
        {"good.json", 0,
         "section 1 \"One\": unchanged\nsection 2 \"Two\": replaced\n"
         "  Two boss [&BEEFAAA=]: at 00:00 12:00, was 00:00 02:00 04:00 06:00 08:00 10:00 12:00 14:00 16:00 18:00 "
         "20:00 22:00\nsection 5 \"Five\": added\n  Five boss [&BEEFAAA=]: new, at 00:00",
         ""},
        {"bad.json", 1, "", "bad.json: [0].sequences.pattern: does not advance\n"},
        {"absent.json", 1, "", "absent.json: cannot be read\n"},
    };
    for (const auto& row : rows) {
        std::ostringstream out, err;
        EXPECT_EQ(runCatalogueCheck({folder.path(row.file)}, embedded, {}, out, err), row.status);
        EXPECT_THAT(out.str(), testing::StartsWith(row.out));
        EXPECT_EQ(out.str().empty(), row.out.empty());
        EXPECT_THAT(err.str(), testing::EndsWith(row.err));
    }
}

}  // namespace vantor

// The Timers tab as a player reads and uses it, with a catalogue that its service sends.

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollBar>
#include <algorithm>

#include "Overlay.h"
#include "app/view/SettingsView.h"
#include "data/SettingKeys.h"
#include "timers/WatchedEvents.h"
#include "timers/view/TimersView.h"
#include "timers/view/WatchAchievementButton.h"
#include "ui/Tabber.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Clock::Seconds minute = 60;

class TimersViewTest : public Overlay {
protected:
    void SetUp() override {
        defaults.put(settings::apiKey, std::string("key"));
        serve({});
        launch();
        load();
        at(10, 0);
    }
    // Three in turn, every five minutes; each with what the second gets as well.
    void serve(const QString& more) {
        const auto page = [&](int number) { return QStringLiteral(R"(,"link":"Page %1")").arg(number) + more; };
        served["events.json"] = "[" +
                                sectionOf(3,
                                          {{QStringLiteral("Boss 1"), page(1)},
                                           {QStringLiteral("Boss 2"), page(2) + QStringLiteral(R"(,"lfg":10)")},
                                           {QStringLiteral("Boss 3"), page(3)}},
                                          5) +
                                "]";
    }
    void reload() {
        observer().data().restart();
        load();
    }
    TimersView& view() { return *below<TimersView>(open(tab_position::timers)).at(0); }
    OccurrenceListView& list() { return view().list(); }
    void at(int hour, int minutes) {
        clock.set(Clock::Seconds{hour} * 60 * minute + Clock::Seconds{minutes} * minute);
        tick();
    }
    void tick() {
        view().refresh();
        settle();
    }
    std::vector<const OccurrenceRowView*> rows() { return list().existingRows(); }
    const OccurrenceRowView* rowAt(const std::string& time) {
        for (const auto* const row : rows())
            if (row->row().time == time) return row;
        return nullptr;
    }
    void clickRow(const std::string& time, QPoint place) {
        click(*const_cast<OccurrenceRowView*>(rowAt(time)), {}, place);
    }
    QAbstractButton& watchAt(const std::string& time) {
        for (auto* const watch : below<WatchAchievementButton>(*rowAt(time))) return *watch;
        throw std::runtime_error("nothing to watch at " + time);
    }
    QLineEdit& search() { return named<QLineEdit>(view(), "Search the timers"); }
    static void pressFocused(int key) {
        ASSERT_TRUE(QApplication::focusWidget());
        sendKey(*QApplication::focusWidget(), key);
    }
    static std::string focused() {
        return QApplication::focusWidget() ? heardOf(*QApplication::focusWidget()) : std::string();
    }
};

TEST_F(TimersViewTest, OnlyRowsOnTheScreenExistAndUnchangedOnesAreNotTouched) {
    const std::size_t onScreen = rows().size();
    EXPECT_GE(onScreen, 7U);
    EXPECT_LE(onScreen, 12U);
    Painted painted;
    clock.advance(20);
    tick();
    for (const auto& [widget, region] : painted.regions) ADD_FAILURE() << widget->metaObject()->className();
    // Watching one event repaints its rows and no others.
    ASSERT_EQ(toggleWatched(defaults, "Boss 1"), Defaults::Verdict::stored);
    settle();
    for (auto* const row : below<OccurrenceRowView>(view()))
        EXPECT_TRUE(row->visibleRegion().isEmpty() ||
                    painted.regions.contains(row) == (row->row().eventName == "Boss 1"))
            << row->row().time;
}

TEST_F(TimersViewTest, KeepsThePlaceTheOpenRowsAndWhatTheyShow) {
    serve(QStringLiteral(R"(,"rewards":{"achievements":[11,12],"items":[5]})"));
    reload();
    list().verticalScrollBar()->setValue(58 * 6 + 10);
    settle();
    const OccurrenceRowView* const row = rowAt("10:45");
    ASSERT_TRUE(row);
    const double id = row->row().id;
    const int y = row->y();
    clickRow("10:45", {200, 20});
    EXPECT_TRUE(list().isOpen(id));
    EXPECT_GT(row->height(), 58 + 2 * 24);
    clickRow("10:45", {200, row->height() - 10});
    EXPECT_TRUE(list().isOpen(id)) << "its block does not close it";

    // Rows at the top leave; what the player looks at stays where it is, in the same widgets.
    clock.advance(12 * minute);
    tick();
    EXPECT_EQ(rowAt("10:45"), row);
    EXPECT_EQ(row->y(), y);
    EXPECT_TRUE(list().isOpen(id));
    // Names and progress arrive: the open block takes them up, nothing closes, nothing is asked again.
    served["achievements?ids=11,12"] =
        R"([{"id":11,"name":"Slayer","description":"","requirement":"","locked_text":"","type":"","flags":[]}])";
    load();
    EXPECT_TRUE(list().isOpen(id));
    EXPECT_THAT(heardOf(*const_cast<OccurrenceRowView*>(row)), testing::StartsWith("10:45, Boss 1, "));
    EXPECT_THAT(heard(*row), Contains(HasSubstr("Slayer: not started")));
    served["account/achievements"] = R"([{"id":11,"current":1,"max":1,"done":true}])";
    reload();
    EXPECT_THAT(heard(*rowAt("10:45")), Contains(HasSubstr("Slayer: done")));
    clickRow("10:45", {200, 20});
    clickRow("10:45", {200, 20});
    load();
    EXPECT_EQ(
        std::ranges::count_if(session.requests(),
                              [](const auto& request) { return request.url.ends_with("achievements?ids=11,12"); }),
        1);
    // Left out by a search and back again.
    search().setText(QStringLiteral("nothing like it"));
    search().clear();
    EXPECT_TRUE(list().isOpen(id));
    at(10, 46);
    EXPECT_FALSE(list().isOpen(id));
}

TEST_F(TimersViewTest, RowsGlowWhereOneGathersAndGrowWhereTheirTextsNeedIt) {
    const auto redness = [this](const char* time) {
        const QRgb pixel = picture(*const_cast<OccurrenceRowView*>(rowAt(time))).pixel(20, 50);
        return qRed(pixel) - qBlue(pixel);
    };
    EXPECT_GT(redness("10:05"), redness("10:20") + 20) << "Boss 2 gathers ten minutes before";
    EXPECT_EQ(rowAt("10:05")->height(), 58);
    serve(QStringLiteral(
        R"(,"rewards":{"achievements":[1],"items":[5],"items_for_achievements":[],"random_items":[6]})"));
    reload();
    mainWindow().resize(mainWindow().minimumSize());
    settle();
    EXPECT_GT(rowAt("10:05")->height(), 58) << "on a line of their own";
}

TEST_F(TimersViewTest, SearchNarrowsAndSaysWhenNothingIsFound) {
    search().setText(QStringLiteral("TYRIA boss  2"));
    for (const auto* row : rows()) EXPECT_EQ(row->row().eventName, "Boss 2");
    EXPECT_THAT(heard<QLabel>(view()), Contains(HasSubstr(" of "))) << "it says how many are left out";
    search().setText(QStringLiteral("dragon"));
    EXPECT_THAT(rows(), IsEmpty());
    press(view(), "Clear the search");
    EXPECT_EQ(search().text(), QString());
    EXPECT_FALSE(rows().empty());
}

TEST_F(TimersViewTest, EmptyListsLeadToWhatHelps) {
    for (const auto& [body, words] :
         {std::pair<std::string, std::string>(R"({"text":"Invalid access token"})", "Check the key"),
          {R"({"text":"requires scope progression"})", "Change the key"},
          {"no JSON", "Try again"}}) {
        launch();
        queue.runAll();
        mainThread.runAll();
        for (const auto* const found : below<QAbstractButton>(view()))
            EXPECT_TRUE(!found->isVisible() || found->text().isEmpty()) << found->text().toStdString();
        answer([&](const auto&) { return body; });
        const std::size_t before = session.requests().size();
        press(view(), words);
        queue.runAll();
        EXPECT_EQ(session.requests().size() > before, words == "Try again");
        EXPECT_EQ(std::ranges::count(heard(mainWindow()), "API Key"), words == "Try again" ? 0 : 1);
    }
    served["events.json"] = "[]";
    reload();
    const auto isAtTheFilters = [this] {
        const auto settings = below<SettingsView>(mainWindow());
        return !settings.empty() && !heard(*settings[0]).empty() &&
               std::ranges::count(heard(*settings[0]), "Show always if") == 1;
    };
    press(view(), "Open the filters");
    EXPECT_TRUE(isAtTheFilters());
    served["events.json"] =
        R"([{"id":1,"category":"","name":"A","active":true,"segments":[{"id":1,"name":"Boss","chatlink":"x"}],)"
        R"("sequences":{"partial":[],"pattern":[{"r":1,"d":1440}]}}])";
    reload();
    clock.set(3600);
    press(view(), "Look further ahead");
    EXPECT_TRUE(isAtTheFilters());
}

TEST_F(TimersViewTest, ControlsAreNamedAndReachedByTheKeyboard) {
    mainWindow().activateWindow();
    search().setFocus();
    for (const char* const next :
         {"Chat link of Boss 2, 10:05", "Open in the wiki: Boss 2, 10:05", "Watch Boss 2, 10:05"}) {
        pressFocused(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
    pressFocused(Qt::Key_Space);
    EXPECT_THAT(readWatchedNames(defaults), ElementsAre("Boss 2"));
    // Along the list in the column of the same control, and beyond what was on the screen.
    pressFocused(Qt::Key_Down);
    EXPECT_EQ(focused(), "Watch Boss 1, 10:00");
    pressFocused(Qt::Key_PageDown);
    EXPECT_GE(focused().substr(focused().size() - 5), "10:20") << "as many rows as are seen, but one";
    pressFocused(Qt::Key_End);
    EXPECT_EQ(focused(), "Watch Boss 1, 13:00");
    pressFocused(Qt::Key_Home);
    EXPECT_EQ(focused(), "Watch Boss 2, 10:05");
    for (int i = 0; i < 90; ++i) pressFocused(Qt::Key_Tab);
    const OccurrenceRowView* const row = rowAt("12:25");  // thirty rows further
    ASSERT_TRUE(row && row->isAncestorOf(QApplication::focusWidget()));
    EXPECT_GE(row->y(), 0);
    EXPECT_LE(row->geometry().bottom(), list().viewport()->height());
    pressFocused(Qt::Key_Home);
    press(*rowAt("10:05"), "Open in the wiki: Boss 2, 10:05");
    EXPECT_EQ(observer().tabs().selected(), static_cast<int>(tab_position::internet));
    EXPECT_EQ(asked.back(), "https://wiki/wiki/Page_2");
}

TEST_F(TimersViewTest, TheFocusStaysWithItsEventAndGoesToTheNextWhenItBegins) {
    mainWindow().activateWindow();
    watchAt("10:15").setFocus();
    EXPECT_EQ(focused(), "Watch Boss 1, 10:15");
    list().verticalScrollBar()->setValue(58 * 20);
    settle();
    EXPECT_EQ(focused(), "Watch Boss 1, 10:15");
    at(10, 8);
    EXPECT_EQ(focused(), "Watch Boss 1, 10:15");
    at(10, 16);
    EXPECT_EQ(focused(), "Watch Boss 2, 10:35");
}

TEST_F(TimersViewTest, AMarkThatCannotBeStoredIsNone) {
    defaults.failAtWrite(defaults.writes() + 1);
    watchAt("10:05").click();
    EXPECT_FALSE(watchAt("10:05").isChecked());
    watchAt("10:05").click();
    EXPECT_TRUE(watchAt("10:05").isChecked());
    EXPECT_TRUE(rowAt("10:05")->row().watched);
}

TEST_F(TimersViewTest, LooksAtTheClockAndItsZoneOnlyWhileItIsShown) {
    const auto ticks = [this] {
        std::vector<int> intervals;
        for (const auto* const timer : below<QTimer>(mainWindow()))
            if (dynamic_cast<TimersView*>(timer->parent()) && timer->isActive()) intervals.push_back(timer->interval());
        return intervals;
    };
    EXPECT_THAT(ticks(), ElementsAre(1000));
    clock.setOffset(5 * minute);
    tick();
    load();
    EXPECT_EQ(rowAt("10:05")->row().eventName, "Boss 1");
    open(tab_position::home);
    EXPECT_THAT(ticks(), IsEmpty());
}

}  // namespace
}  // namespace vantor

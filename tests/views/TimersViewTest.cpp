#include "timers/view/TimersView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <map>

#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "timers/view/RowButton.h"
#include "timers/view/WatchAchievementButton.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Clock::Seconds minute = 60;

// Occurrences a given number of minutes apart, over a day and more.
std::shared_ptr<const Timeline> timelineOf(std::int64_t apart, std::optional<EventRewards> rewards = {},
                                           int offsetSeconds = 0) {
    EventsSection section;
    section.id = 3;
    section.category = "Core Tyria";
    section.name = "World bosses";
    section.active = true;
    for (std::int64_t id = 1; id <= 3; ++id) {
        Event event;
        event.id = id;
        event.name = "Boss " + std::to_string(id);
        event.chatlink = "[&link" + std::to_string(id) + "=]";
        event.link = "Page " + std::to_string(id);
        event.rewards = rewards;
        section.segments.push_back(event);
        section.sequences.pattern.push_back({id, apart});
    }
    section.segments[1].lfg = 10;
    return std::make_shared<const Timeline>(std::get<Timeline>(computeTimeline({&section, 1}, {}, {}, offsetSeconds)));
}

// Counts the paints of every widget below the watched one.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QObject& application) : application_(application) { application_.installEventFilter(this); }
    ~PaintCounter() override { application_.removeEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints[watched];
        return false;
    }
    std::map<QObject*, int> paints;

private:
    QObject& application_;
};

class TimersViewTest : public testing::Test {
protected:
    TimersViewTest() {
        auto* const column = new QVBoxLayout(&window_);
        column->setContentsMargins(0, 0, 0, 0);
        EmptyListActions actions;
        actions.openKeyField = [this] { went.emplace_back("key field"); };
        actions.openFilters = [this] { went.emplace_back("filters"); };
        actions.tryAgain = [this] { went.emplace_back("again"); };
        view = new TimersView({{clock, defaults, [this] { return timeline; }, [] {},
                                [this](std::function<void()> handler) {
                                    loaded = std::move(handler);
                                    return Subscription();
                                }},
                               [this] { return state; },
                               [this] { return progress; },
                               names,
                               [](const QString& link, QWidget* parent) -> QWidget* {
                                   auto* const button = new RowButton(QStringLiteral("waypoint"), parent);
                                   button->setObjectName(link);
                                   return button;
                               },
                               [this](const std::string& page) { went.push_back(page); },
                               actions},
                              &window_);
        column->addWidget(view);
        window_.resize(880, 480);
        window_.show();
        window_.activateWindow();
        settle();
    }

    static void settle() {
        for (int i = 0; i < 4; ++i) QApplication::processEvents();
        // What an event loop would do on its way.
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void at(int hour, int minutes) {
        clock.set(Clock::Seconds{hour} * 60 * minute + Clock::Seconds{minutes} * minute);
        tick();
    }
    void tick() {
        view->refresh();
        settle();
    }
    std::vector<const OccurrenceRowView*> rows() { return view->list().existingRows(); }
    std::vector<std::string> times() {
        std::vector<std::string> texts;
        for (const auto* row : rows()) texts.push_back(row->row().time);
        return texts;
    }
    const OccurrenceRowView* rowAt(const std::string& time) {
        for (const auto* row : rows())
            if (row->row().time == time) return row;
        return nullptr;
    }
    WatchAchievementButton* watchAt(const std::string& time) {
        const OccurrenceRowView* const row = rowAt(time);
        for (QWidget* const control : row ? row->controls() : std::vector<QWidget*>())
            if (auto* const watch = dynamic_cast<WatchAchievementButton*>(control)) return watch;
        return nullptr;
    }
    QLineEdit& search() { return *view->findChild<QLineEdit*>(); }
    // The button of what an empty list says, found as a player finds it: by its words.
    QAbstractButton* button(const QString& words) {
        for (auto* const found : view->findChildren<QAbstractButton*>())
            if (found->isVisible() && found->text() == words) return found;
        return nullptr;
    }
    static void press(int key) {
        QWidget* const target = QApplication::focusWidget();
        ASSERT_TRUE(target);
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(target, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
        QApplication::sendEvent(target, &up);
    }
    std::string focused() {
        const QWidget* const widget = QApplication::focusWidget();
        return widget ? widget->accessibleName().toStdString() : std::string();
    }

    FakeClock clock{10 * 60 * minute};
    FakeDefaults defaults;
    std::shared_ptr<const Timeline> timeline = timelineOf(5);
    DataState state = DataState::ready;
    std::shared_ptr<const std::vector<AchievementCompletition>> progress =
        std::make_shared<const std::vector<AchievementCompletition>>();
    std::vector<std::vector<std::int64_t>> asked;
    AchievementNames names{[this](std::vector<std::int64_t> ids) { asked.push_back(std::move(ids)); }};
    std::function<void()> loaded;
    std::vector<std::string> went;
    QWidget window_;
    TimersView* view = nullptr;
};

TEST_F(TimersViewTest, OnlyRowsOnTheScreenExistAndUnchangedOnesAreNotTouched) {
    const std::size_t onScreen = rows().size();
    EXPECT_GE(onScreen, 7U);
    EXPECT_LE(onScreen, 12U);
    PaintCounter counter(*qApp);
    clock.advance(20);
    tick();
    tick();
    for (const auto& [widget, count] : counter.paints) EXPECT_EQ(count, 0) << widget->metaObject()->className();
    // Watching one event repaints its rows and no others.
    ASSERT_EQ(toggleWatched(defaults, "Boss 1"), Defaults::Verdict::stored);
    QApplication::processEvents();
    int painted = 0;
    for (const auto* row : rows()) {
        const bool touched = counter.paints[const_cast<OccurrenceRowView*>(row)] > 0;
        EXPECT_TRUE(!touched || row->row().eventName == "Boss 1") << row->row().time;
        painted += touched ? 1 : 0;
    }
    EXPECT_GE(painted, 2);
}

TEST_F(TimersViewTest, KeepsThePlaceTheOpenRowsAndWhatTheyShow) {
    timeline = timelineOf(5, EventRewards{{{11, 12}}, {{5}}, {}, {}});
    tick();
    view->list().verticalScrollBar()->setValue(58 * 6 + 10);
    QApplication::processEvents();
    const OccurrenceRowView* const row = rowAt("10:45");
    ASSERT_TRUE(row);
    const double id = row->row().id;
    const int y = row->y();
    view->list().toggleOpen(id);
    EXPECT_THAT(asked, ElementsAre(ElementsAre(11, 12)));
    EXPECT_GT(row->height(), 58 + 2 * 24);

    // Rows at the top leave; what the player looks at stays where it is, in the same widgets.
    clock.advance(12 * minute);
    tick();
    EXPECT_EQ(rowAt("10:45"), row);
    EXPECT_EQ(row->y(), y);
    EXPECT_TRUE(view->list().isOpen(id));
    // Names arrive: the open block takes them up, nothing closes, nothing is asked again.
    Achievement achievement;
    achievement.id = 11;
    achievement.name = "Slayer";
    names.loaded({achievement}, false);
    loaded();
    EXPECT_TRUE(view->list().isOpen(id));
    const auto isSaid = [&](const char* words) {
        return row->accessibleName().startsWith(QLatin1String("10:45, Boss 1, ")) &&
               std::ranges::any_of(row->findChildren<QWidget*>(), [&](const QWidget* part) {
                   return part->accessibleName().contains(QLatin1String(words));
               });
    };
    EXPECT_TRUE(isSaid("Slayer: not started"));
    progress = std::make_shared<const std::vector<AchievementCompletition>>(
        std::vector<AchievementCompletition>{{11, {}, 1, 1, true, {}, {}}});
    loaded();
    EXPECT_TRUE(isSaid("Slayer: done"));
    view->list().toggleOpen(id);
    view->list().toggleOpen(id);
    EXPECT_EQ(asked.size(), 1U);
    // Left out by a search and back again.
    search().setText(QStringLiteral("nothing like it"));
    search().clear();
    EXPECT_TRUE(view->list().isOpen(id));
    at(10, 46);
    EXPECT_FALSE(view->list().isOpen(id));
}

TEST_F(TimersViewTest, SearchNarrowsAndSaysWhenNothingIsFound) {
    search().setText(QStringLiteral("TYRIA boss  2"));
    for (const auto* row : rows()) EXPECT_EQ(row->row().eventName, "Boss 2");
    EXPECT_TRUE(std::ranges::any_of(view->findChildren<QLabel*>(), [](const QLabel* label) {
        return label->text().contains(QLatin1String(" of "));
    })) << "it says how many are left out";
    search().setText(QStringLiteral("dragon"));
    EXPECT_THAT(rows(), IsEmpty());
    QAbstractButton* const clear = button(QStringLiteral("Clear the search"));
    ASSERT_TRUE(clear);
    clear->click();
    EXPECT_EQ(search().text(), QString());
    EXPECT_FALSE(rows().empty());
}

TEST_F(TimersViewTest, EmptyListsLeadToWhatHelps) {
    const auto press = [&](const char* words) {
        tick();
        EXPECT_THAT(rows(), IsEmpty()) << words;
        QAbstractButton* const found = button(QLatin1StringView(words));
        ASSERT_TRUE(found) << words;
        found->click();
    };
    timeline = nullptr;
    for (const auto& [missing, words] :
         {std::pair(DataState::noKey, "Enter the key"), std::pair(DataState::keyRefused, "Check the key"),
          std::pair(DataState::keyLacksScope, "Change the key"), std::pair(DataState::failed, "Try again")}) {
        state = missing;
        press(words);
    }
    state = DataState::loading;
    tick();
    for (const auto* const found : view->findChildren<QAbstractButton*>())
        EXPECT_TRUE(!found->isVisible() || found->text().isEmpty()) << found->text().toStdString();
    timeline = std::make_shared<const Timeline>();
    state = DataState::ready;
    press("Open the filters");
    timeline = timelineOf(5, {}, -5 * 3600);
    clock.setOffset(-5 * 3600);
    clock.set(4 * 3600 + 50 * minute + 24 * 3600);  // 23:50 local, where the timeline ended at 19:00
    press("Look further ahead");
    EXPECT_THAT(went, ElementsAre("key field", "key field", "key field", "again", "filters", "filters"));
}

TEST_F(TimersViewTest, ControlsAreNamedAndReachedByTheKeyboard) {
    search().setFocus();
    QWidget* const field = QApplication::focusWidget();
    const auto tab = [&] {
        ASSERT_TRUE(QApplication::focusWidget());
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QApplication::sendEvent(QApplication::focusWidget(), &key);
    };
    tab();
    EXPECT_EQ(focused(), "Chat link of Boss 2, 10:05") << (QApplication::focusWidget() == field);
    tab();
    EXPECT_EQ(focused(), "Open in the wiki: Boss 2, 10:05");
    press(Qt::Key_Space);
    EXPECT_THAT(went, ElementsAre("Page 2"));
    tab();
    EXPECT_EQ(focused(), "Watch Boss 2, 10:05");
    press(Qt::Key_Space);
    EXPECT_THAT(readWatchedNames(defaults), ElementsAre("Boss 2"));
    // Along the list in the column of the same control, and beyond what was on the screen.
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Watch Boss 1, 10:00");
    press(Qt::Key_PageDown);
    EXPECT_GE(focused(), "Watch Boss 1, 10:30") << "as many rows as are seen, but one";
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "Watch Boss 1, 13:00");
    press(Qt::Key_Home);
    EXPECT_EQ(focused(), "Watch Boss 2, 10:05");
    for (int i = 0; i < 90; ++i) tab();
    EXPECT_NE(focused(), "");
    const OccurrenceRowView* const row =
        static_cast<const OccurrenceRowView*>(QApplication::focusWidget()->parentWidget());
    EXPECT_EQ(row->row().time, "12:25");  // thirty rows further
    EXPECT_GE(row->y(), 0);
    EXPECT_LE(row->geometry().bottom(), view->list().viewport()->height());
}

TEST_F(TimersViewTest, TheFocusStaysWithItsEventAndGoesToTheNextWhenItBegins) {
    ASSERT_TRUE(watchAt("10:15"));
    watchAt("10:15")->setFocus();
    EXPECT_EQ(focused(), "Watch Boss 1, 10:15");
    view->list().verticalScrollBar()->setValue(58 * 20);
    QApplication::processEvents();
    EXPECT_EQ(focused(), "Watch Boss 1, 10:15");
    at(10, 8);
    EXPECT_EQ(focused(), "Watch Boss 1, 10:15");
    at(10, 16);
    EXPECT_EQ(focused(), "Watch Boss 2, 10:35");
}

TEST_F(TimersViewTest, AMarkThatCannotBeStoredIsNone) {
    auto* const watch = watchAt("10:05");
    ASSERT_TRUE(watch);
    defaults.failAtWrite(1);
    watch->click();
    EXPECT_FALSE(watch->isChecked());
    watch->click();
    EXPECT_TRUE(watch->isChecked());
    EXPECT_TRUE(rowAt("10:05")->row().watched);
}

TEST_F(TimersViewTest, LooksAtTheClockOnlyWhileItIsShown) {
    int looks = 0;
    TimersView other({{clock, defaults, [&] { return timeline; }, [&] { ++looks; },
                       [](const std::function<void()>&) { return Subscription(); }},
                      [] { return DataState::ready; },
                      [&] { return progress; },
                      names,
                      [](const QString&, QWidget* parent) { return new QWidget(parent); },
                      [](const std::string&) {},
                      {}},
                     nullptr);
    const auto ticks = [&] {
        std::vector<int> intervals;
        for (const auto* const timer : other.findChildren<QTimer*>())
            if (timer->isActive() && !timer->isSingleShot()) intervals.push_back(timer->interval());
        return intervals;
    };
    other.refresh();
    EXPECT_EQ(looks, 0);
    other.show();
    EXPECT_GE(looks, 1);
    EXPECT_THAT(ticks(), ElementsAre(1000));
    other.hide();
    EXPECT_THAT(ticks(), IsEmpty());
    looks = 0;
    other.refresh();
    EXPECT_EQ(looks, 0);
}

}  // namespace
}  // namespace vantor

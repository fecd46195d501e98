#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include "app/view/FloatWindow.h"
#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "timers/WatchedEvents.h"
#include "timers/view/BestiaryFamilyView.h"
#include "timers/view/BestiaryView.h"
#include "timers/view/TimerSettingsView.h"
#include "timers/view/WatchedEventsView.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

constexpr Clock::Seconds minute = 60;

std::shared_ptr<const Timeline> timelineAt(int offsetSeconds) {
    EventsSection section;
    section.id = 3;
    section.name = "World bosses";
    section.active = true;
    Event boss;
    boss.id = 7;
    boss.name = "Boss";
    boss.lfg = 10;
    boss.chatlink = "[&x]";
    section.segments = {boss};
    section.sequences.pattern = {{7, 120}};
    return std::make_shared<const Timeline>(std::get<Timeline>(computeTimeline({&section, 1}, {}, {}, offsetSeconds)));
}

class WatchedFeedTest : public testing::Test {
protected:
    TimelineSource source() {
        return {clock, defaults, [this] { return timeline; },
                [this] {
                    ++looks;
                    const int offset = clock.utcOffsetSeconds(clock.now());
                    if (offset == std::exchange(offset_, offset)) return;
                    timeline = timelineAt(offset);
                },
                [this](std::function<void()> handler) {
                    loaded = std::move(handler);
                    return Subscription();
                }};
    }
    // What the feed's own timer does when its time has come.
    void at(int hour, int minutes, int second = 0) {
        clock.set(day * 24 * 60 * minute + (Clock::Seconds{hour} * 60 + minutes) * minute + second -
                  clock.utcOffsetSeconds(0));
        feed.refresh();
    }
    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const OccurrenceRow& row : feed.rows()) texts.push_back(row.time + " " + row.remaining);
        return texts;
    }

    FakeClock clock;
    FakeDefaults defaults;
    Clock::Seconds day = 20000;
    int offset_ = 0;
    int looks = 0;
    std::shared_ptr<const Timeline> timeline = timelineAt(0);
    std::function<void()> loaded;
    WatchedFeed feed{source()};
};

TEST_F(WatchedFeedTest, RestsWithoutAWatchedEventAndWithoutAListener) {
    ASSERT_EQ(toggleWatched(defaults, "Boss"), Defaults::Verdict::stored);
    at(11, 55);
    EXPECT_EQ(looks, 0);
    EXPECT_EQ(feed.rest(), std::nullopt);

    int changes = 0;
    Subscription listener = feed.observe([&] { ++changes; });
    EXPECT_THAT(shown(), ElementsAre("12:00 gathering"));
    EXPECT_EQ(feed.badgeText().toStdString(), "1");
    EXPECT_EQ(feed.rest(), 1s);
    ASSERT_EQ(toggleWatched(defaults, "Boss"), Defaults::Verdict::stored);
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(feed.badgeText(), QString());
    EXPECT_EQ(feed.rest(), std::nullopt);
    ASSERT_EQ(toggleWatched(defaults, "Boss"), Defaults::Verdict::stored);
    EXPECT_EQ(feed.rest(), 1s);
    listener.reset();
    EXPECT_EQ(feed.rest(), std::nullopt);
}

TEST_F(WatchedFeedTest, RestsUntilTheNextMomentThatCouldChangeTheList) {
    ASSERT_EQ(toggleWatched(defaults, "Boss"), Defaults::Verdict::stored);
    int changes = 0;
    const Subscription listener = feed.observe([&] { ++changes; });
    at(11, 30);
    changes = 0;
    EXPECT_EQ(feed.rest(), 60s);  // the longest
    at(11, 46, 40);
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(feed.rest(), 20s);  // it enters at 11:47
    at(11, 47);
    EXPECT_THAT(shown(), ElementsAre("12:00 in 13 min"));
    at(11, 47, 59);
    EXPECT_EQ(changes, 1);
    at(11, 50);
    EXPECT_THAT(shown(), ElementsAre("12:00 gathering"));
    at(12, 0, 59);
    EXPECT_THAT(shown(), ElementsAre("12:00 now"));
    at(12, 1);
    EXPECT_THAT(shown(), IsEmpty());
    // The slider's change counts at once.
    at(13, 41);
    defaults.put(settings::timerWatchedWindowDuration, 3.0);
    ASSERT_EQ(defaults.setValue(settings::timerWatchedWindowDuration, 10.0), Defaults::Verdict::stored);
    EXPECT_THAT(shown(), ElementsAre("14:00 in 19 min"));
}

TEST_F(WatchedFeedTest, TheWindowIsThereWhileItHoldsSomethingAndGrowsFromItsCorner) {
    FloatWindow window(QStringLiteral("Watched"), {250, 60}, true, {});
    WatchedEventsView view(feed, [&](QSize size) { window.fit(size); }, nullptr);
    window.setContent(&view);
    window.onWanted([&](bool wanted) { view.setFollowing(wanted); });
    window.setGeometry(300, 200, 250, 60);
    at(11, 0);
    window.orderFront();
    QApplication::processEvents();
    const auto picture = [&] {
        QImage image(window.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        window.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    };
    EXPECT_FALSE(window.isVisible());

    ASSERT_EQ(toggleWatched(defaults, "Boss"), Defaults::Verdict::stored);
    at(11, 50);
    QApplication::processEvents();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.pos(), QPoint(300, 200));
    EXPECT_EQ(window.size(), view.sizeHint());
    EXPECT_GT(qAlpha(picture().pixel(30, 30)), 200);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_EQ(view.accessibleDescription(), QStringLiteral("12:00 Boss gathering"));

    at(12, 1);
    QApplication::processEvents();
    EXPECT_FALSE(window.isVisible());

    window.orderOut();
    at(11, 50);
    QApplication::processEvents();
    EXPECT_FALSE(window.isVisible());
    window.orderFront();
    EXPECT_EQ(window.geometry(), QRect(QPoint(300, 200), view.sizeHint()));
    view.setParent(nullptr);
}

TEST_F(WatchedFeedTest, TheWindowStaysOnTheScreenAndGoesBackToItsCorner) {
    // All of them at noon, each in a section of its own.
    std::vector<EventsSection> sections;
    for (int id = 1; id <= 60; ++id) {
        Event event;
        event.id = id;
        event.name = "Boss " + std::to_string(id);
        event.chatlink = "[&x]";
        EventsSection section;
        section.id = id;
        section.active = true;
        section.segments = {event};
        section.sequences.pattern = {{id, 120}};
        sections.push_back(section);
    }
    timeline = std::make_shared<const Timeline>(std::get<Timeline>(computeTimeline(sections, {}, {}, 0)));

    FloatWindow window(QStringLiteral("Watched"), {250, 60}, true, {});
    std::vector<QRect> told;
    window.onPlaced([&](const QRect& frame) { told.push_back(frame); });
    WatchedEventsView view(feed, [&](QSize size) { window.fit(size); }, nullptr);
    window.setContent(&view);
    window.onWanted([&](bool wanted) { view.setFollowing(wanted); });
    const QRect screen = window.screen()->availableGeometry();
    const QPoint corner(screen.right() - 100, screen.bottom() - 100);
    window.setGeometry(QRect(corner, QSize(250, 60)));
    const auto watch = [&](int count) {
        for (int id = 1; id <= count; ++id)
            ASSERT_EQ(toggleWatched(defaults, "Boss " + std::to_string(id)), Defaults::Verdict::stored);
    };
    watch(60);
    at(11, 58);
    window.orderFront();
    QApplication::processEvents();
    EXPECT_TRUE(screen.contains(window.geometry()));
    EXPECT_GT(window.height(), screen.height() - 60);
    EXPECT_EQ(view.accessibleDescription().count(QStringLiteral("Boss")), 60);

    watch(57);
    QApplication::processEvents();
    EXPECT_LT(window.height(), 200);
    EXPECT_TRUE(screen.contains(window.geometry()));
    EXPECT_EQ(window.geometry().bottom(), screen.bottom());
    window.orderOut();
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back().topLeft(), corner);
    view.setParent(nullptr);
}

TEST(TimerSettingsViewTest, HasItsTextsAndReloads) {
    FakeDefaults defaults;
    int reloads = 0;
    TimerSettingsView view(defaults, [&] { ++reloads; }, nullptr);
    view.resize(600, 640);
    view.show();
    std::vector<std::string> toggles;
    QAbstractButton* reload = nullptr;
    for (auto* const button : view.findChildren<QAbstractButton*>()) {
        if (button->text() == QStringLiteral("Reload events"))
            reload = button;
        else
            toggles.push_back(button->text().toStdString() + (button->isChecked() ? " on" : ""));
    }
    EXPECT_THAT(toggles, ElementsAre("is timer (Day/Night cycle, etc)", "is event on", "has guaranteed rewards",
                                     "can drop valuable items", "has associated achievements",
                                     "drops collections items", "is temporary special event"));
    for (auto* const button : view.findChildren<QAbstractButton*>())
        if (button->text() == QStringLiteral("has associated achievements")) button->click();
    EXPECT_EQ(defaults.get<bool>(settings::timerHasAchievements), true);
    EXPECT_EQ(reloads, 0);

    const auto updated = [&] {
        for (const auto* const label : view.findChildren<QLabel*>())
            if (label->text() == QStringLiteral("Timers updated!")) return label->isVisible();
        ADD_FAILURE() << "no such text";
        return false;
    };
    EXPECT_FALSE(updated());
    ASSERT_TRUE(reload);
    reload->click();
    EXPECT_EQ(reloads, 1);
    EXPECT_TRUE(updated());
}

TEST(BestiaryViewTest, NarrowsLooksUpAndFollowsTheProgress) {
    const auto beasts = std::make_shared<const std::vector<BeastCategory>>(std::vector<BeastCategory>{
        {"animals", {{"bat", "race_bat", "Flies.", 1, "Kill bats."}, {"drake", "none", "Bites.", 2, "Kill drakes."}}},
        {"armies", {{"sons_of_svanir", "x", "Worship.", {}, "None."}}}});
    auto progress = std::make_shared<const std::vector<AchievementCompletition>>();
    std::function<void()> loaded;
    std::vector<std::string> lookedUp;
    BestiaryView view({[&] { return beasts; },
                       [&] { return progress; },
                       [] { return DataState::ready; },
                       [&](std::function<void()> handler) {
                           loaded = std::move(handler);
                           return Subscription();
                       },
                       [&](const std::string& family) { lookedUp.push_back(family); },
                       {}},
                      nullptr);
    view.resize(880, 500);
    view.show();
    const auto families = [&] {
        std::vector<std::string> names;
        for (auto* const button : view.findChildren<QAbstractButton*>())
            if (const auto* const family = dynamic_cast<BestiaryFamilyView*>(button); family && family->isVisible())
                names.push_back(family->accessibleName().section(QLatin1Char('.'), 0, 0).toStdString());
        return names;
    };
    EXPECT_THAT(families(), ElementsAre("Bat, not started", "Drake, not started", "Sons of svanir, no achievement"));
    progress = std::make_shared<const std::vector<AchievementCompletition>>(
        std::vector<AchievementCompletition>{{2, {}, 1000, 1000, true, {}, {}}});
    loaded();
    EXPECT_THAT(families(), ElementsAre("Bat, not started", "Drake, done", "Sons of svanir, no achievement"));
    EXPECT_TRUE(std::ranges::any_of(view.findChildren<QAbstractButton*>(), [](const QAbstractButton* button) {
        return button->text() == QStringLiteral("Animals  ·  1 of 2 done");
    }));

    auto* const search = view.findChild<QLineEdit*>();
    search->setText(QStringLiteral("OF sons"));
    EXPECT_THAT(families(), ElementsAre("Sons of svanir, no achievement"));
    for (auto* const button : view.findChildren<QAbstractButton*>())
        if (dynamic_cast<BestiaryFamilyView*>(button) && button->isVisible()) button->click();
    EXPECT_THAT(lookedUp, ElementsAre("sons_of_svanir"));
    search->setText(QStringLiteral("dragon"));
    EXPECT_THAT(families(), IsEmpty());
    search->clear();
    EXPECT_EQ(families().size(), 3U);
}

}  // namespace
}  // namespace vantor

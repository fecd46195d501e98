// What is watched, in its own window and on the badge; and the bestiary.

#include <QtGui/QScreen>
#include <QtGui/QWindow>

#include "Overlay.h"
#include "app/view/FloatWindow.h"
#include "app/view/TabPages.h"
#include "data/SettingKeys.h"
#include "timers/WatchedEvents.h"
#include "timers/view/BestiaryFamilyView.h"
#include "timers/view/WatchedEventsView.h"
#include "timers/view/WatchedFeed.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

constexpr Clock::Seconds minute = 60;
const auto gathers = QStringLiteral(R"(,"lfg":10)");

// All of them happen at noon and each two hours before and after.
class WatchedTest : public Overlay {
protected:
    void serve(const std::vector<QString>& names, const QString& more = gathers) {
        std::string sections;
        for (int id = 0; const QString& name : names)
            sections += (sections.empty() ? "" : ",") + sectionOf(++id, {{name, more}}, 120);
        served["events.json"] = "[" + sections + "]";
        defaults.put(settings::apiKey, std::string("key"));
        launch();
        load();
    }
    void at(int hour, int minutes, int second = 0) {
        clock.set((Clock::Seconds{hour} * 60 + minutes) * minute + second);
    }
    void toggle(const std::string& name = "Boss") {
        ASSERT_EQ(toggleWatched(defaults, name), Defaults::Verdict::stored);
        settle();
    }
};

TEST_F(WatchedTest, TheFeedRestsUntilTheNextMomentThatCouldChangeTheList) {
    serve({QStringLiteral("Boss")});
    WatchedFeed feed(timelineOf(observer(), observer()));
    using Rest = std::optional<std::chrono::milliseconds>;
    // What the feed's own timer does when its time has come.
    const auto look = [&](int hour, int minutes, int second = 0) {
        at(hour, minutes, second);
        feed.refresh();
        return feed.rows().empty() ? std::string() : feed.rows()[0].time + " " + feed.rows()[0].remaining;
    };
    toggle();
    EXPECT_EQ(look(11, 55), "");
    EXPECT_EQ(feed.rest(), Rest()) << "nobody listens";
    int changes = 0;
    Subscription listener = feed.observe([&] { ++changes; });
    EXPECT_EQ(look(11, 55), "12:00 gathering");
    EXPECT_EQ(feed.badgeText().toStdString(), "1");
    EXPECT_EQ(feed.rest(), Rest(1s));
    toggle();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(look(11, 55), "");
    EXPECT_EQ(feed.badgeText(), QString());
    EXPECT_EQ(feed.rest(), Rest()) << "nothing is watched";
    toggle();
    changes = 0;
    for (const auto& [minutes, second, text, rest] : {std::tuple(30, 0, "", Rest(60s)),
                                                      {46, 40, "", Rest(20s)},
                                                      {47, 0, "12:00 in 13 min", Rest(1s)},
                                                      {47, 59, "12:00 in 13 min", Rest(1s)}}) {
        EXPECT_EQ(look(11, minutes, second), text);
        EXPECT_EQ(feed.rest(), rest) << minutes << ":" << second;
    }
    EXPECT_EQ(changes, 2) << "it went and came";
    EXPECT_EQ(look(12, 0, 59), "12:00 now");
    EXPECT_EQ(look(12, 1), "");
    // The slider's change counts at once.
    look(13, 41);
    ASSERT_EQ(defaults.setValue(settings::timerWatchedWindowDuration, 10.0), Defaults::Verdict::stored);
    EXPECT_EQ(look(13, 41), "14:00 in 19 min");
    listener.reset();
    EXPECT_EQ(feed.rest(), Rest());
}

class WatchedWindowTest : public WatchedTest {
protected:
    // While the overlay is closed.
    void serveAndClose(const std::vector<QString>& names, const QString& more = gathers) {
        serve(names, more);
        observer().closePressed();
        settle();
    }
    static FloatWindow& window() {
        for (QWidget* const each : QApplication::topLevelWidgets())
            if (each->windowTitle() == QLatin1String("Vantor watched events")) return static_cast<FloatWindow&>(*each);
        throw std::runtime_error("there is no list");
    }
    // Every change of the settings that it goes by makes the list look at the clock.
    void lookAt(int hour, int minutes) {
        at(hour, minutes);
        ASSERT_EQ(defaults.setValue(settings::timerWatchedWindowDuration, 3.0), Defaults::Verdict::stored);
        settle();
    }
    static std::string spoken() { return heardOf(*below<WatchedEventsView>(window()).at(0), QAccessible::Description); }
};

TEST_F(WatchedWindowTest, IsThereWhileItHoldsSomethingAndGrowsFromItsCorner) {
    serveAndClose({QStringLiteral("Boss"), QStringLiteral("One whose name is too long for a single line")});
    defaults.put("frame.WatchedEvents", std::string());
    window().move(300, 200);
    const auto picture = [&] {
        QImage image(window().size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        window().render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    };
    lookAt(11, 50);
    for (int times = 0; times < 2; ++times) {
        EXPECT_FALSE(window().isVisible()) << "it would keep clicks from the game";
        toggle();
        EXPECT_TRUE(window().isVisible());
        EXPECT_EQ(window().pos(), QPoint(300, 200));
        EXPECT_GT(qAlpha(picture().pixel(30, 30)), 200);
        EXPECT_TRUE(window().windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
        EXPECT_EQ(spoken(), "12:00 Boss gathering");
        toggle();
    }
    toggle();
    const int oneLine = window().height();
    toggle();
    toggle("One whose name is too long for a single line");
    EXPECT_GT(window().height(), oneLine + 10);
}

TEST_F(WatchedWindowTest, StaysOnTheScreenAndGoesBackToItsCorner) {
    std::vector<QString> names;
    for (int id = 1; id <= 60; ++id) names.push_back(QStringLiteral("Boss %1").arg(id));
    serveAndClose(names, {});
    const QRect screen = window().screen()->availableGeometry();
    const QPoint corner(screen.right() - 100, screen.bottom() - 100);
    window().place(QRect(corner, QSize(250, 60)));
    const auto watch = [&](int count) {
        for (int id = 1; id <= count; ++id) toggle("Boss " + std::to_string(id));
    };
    at(11, 58);
    watch(60);
    EXPECT_TRUE(screen.contains(window().geometry()));
    EXPECT_GT(window().height(), screen.height() - 60);
    EXPECT_EQ(QString::fromStdString(spoken()).count(QStringLiteral("Boss")), 60);

    watch(57);
    EXPECT_LT(window().height(), 200);
    EXPECT_TRUE(screen.contains(window().geometry()));
    EXPECT_EQ(window().geometry().bottom(), screen.bottom());
    FloatWindow& list = window();
    list.orderOut();
    EXPECT_EQ(list.pos(), corner);
}

TEST_F(WatchedTest, TheBestiaryNarrowsAndFollowsTheProgress) {
    served["beasts"] = R"([
        {"id":"animals","races":[
            {"id":"bat","icon":"race_neutral","description":"A","unlock":1,"unlock_txt":"B"},
            {"id":"cat","icon":"none","description":"A","unlock":2,"unlock_txt":"B"}]},
        {"id":"armies","races":[{"id":"sons_of_svanir","icon":"x","description":"Worship.","unlock_txt":"None."}]}])";
    serve({});
    MainWindow& window = open(tab_position::bestiary);
    const auto families = [&] {
        std::vector<std::string> names;
        for (const std::string& each : heard<BestiaryFamilyView>(window))
            if (const auto end = each.find('.'); end != std::string::npos) names.push_back(each.substr(0, end));
        return names;
    };
    EXPECT_THAT(families(), ElementsAre("Bat, not started", "Cat, not started", "Sons of svanir, no achievement"));
    // The pictures alone.
    const auto icon = [&](const char* name) {
        return picture(named<BestiaryFamilyView>(window, name)).copy(12, 12, 44, 44);
    };
    EXPECT_EQ(icon("Bat, not started. A B"), icon("Cat, not started. A B")) << "what has none has the neutral one";
    served["account/achievements"] = R"([{"id":2,"current":9,"max":9,"done":true}])";
    observer().data().restart();
    load();
    EXPECT_THAT(families(), ElementsAre("Bat, not started", "Cat, done", "Sons of svanir, no achievement"));
    EXPECT_THAT(heard(window), Contains("Animals  ·  1 of 2 done"));

    auto& search = named<QLineEdit>(window, "Search the bestiary");
    search.setText(QStringLiteral("cat"));
    settle();
    EXPECT_EQ(named<BestiaryFamilyView>(window, "Cat, done. A B").pos(), QPoint(0, 0));
    search.setText(QStringLiteral("OF sons"));
    EXPECT_THAT(families(), ElementsAre("Sons of svanir, no achievement"));
    search.setText(QStringLiteral("dragon"));
    EXPECT_THAT(families(), IsEmpty());
    press(window, "Clear the search");
    EXPECT_EQ(families().size(), 3U);
    search.setText(QStringLiteral("OF sons"));
    click(*below<BestiaryFamilyView>(window).at(2));
    EXPECT_EQ(observer().tabs().selected(), static_cast<int>(tab_position::internet));
    EXPECT_EQ(asked.back(), "https://wiki/index.php?search=sons_of_svanir");
}

}  // namespace
}  // namespace vantor

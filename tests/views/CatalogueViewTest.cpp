// What the settings say of the catalogue.
#include "app/view/CatalogueView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLabel>

#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "timers/view/TimersView.h"

namespace vantor {
namespace {

using ::testing::ElementsAre;

struct CatalogueViewTest : testing::Test {
    CatalogueStatus status{.facts = {7, "2026-09-03", ""}, .playerFiles = {}, .playerFaults = {}};
    FakeDefaults defaults;
    std::function<void()> changed;
    std::vector<std::string> pressed;
    CatalogueNeeds needs{[this] { return std::make_shared<const CatalogueStatus>(status); },
                         [this](std::function<void()> handler) {
                             changed = std::move(handler);
                             return Subscription();
                         },
                         [this] { pressed.emplace_back("read"); }, [this] { pressed.emplace_back("back"); }, defaults};

    static std::vector<std::string> texts(const QWidget& view) {
        std::vector<std::string> shown;
        for (const auto* label : view.findChildren<QLabel*>())
            if (label->isVisibleTo(&view)) shown.push_back(label->text().toStdString());
        return shown;
    }
    static QAbstractButton* button(const QWidget& view, const char* text) {
        for (auto* each : view.findChildren<QAbstractButton*>())
            if (each->text() == QLatin1StringView(text) && each->isVisibleTo(&view)) return each;
        return nullptr;
    }
};

TEST_F(CatalogueViewTest, SaysWhereTheTimesComeFromAndWhatIsWrong) {
    const CatalogueView view(needs, nullptr);
    EXPECT_THAT(texts(view),
                ElementsAre("Event times: version 7 of 3 September 2026, built in", "Your own files: none is used"));
    EXPECT_EQ(button(view, "Back to the one before"), nullptr);
    EXPECT_EQ(button(view, "Look for newer event times every few hours"), nullptr) << "there is no host";

    status.source = CatalogueStatus::Source::update;
    status.playerFiles = {"a.json", "b.json"};
    status.playerFaults = {"c.json: [0].id: missing"};
    status.updateFault = "The catalogue update was refused: signature: does not hold";
    changed();
    EXPECT_THAT(
        texts(view),
        ElementsAre("Event times: version 7 of 3 September 2026, a signed update", "Your own files: a.json, b.json",
                    "The catalogue update was refused: signature: does not hold\nc.json: [0].id: missing"));
    button(view, "Read my files")->click();
    button(view, "Back to the one before")->click();
    EXPECT_THAT(pressed, ElementsAre("read", "back"));

    status.fetches = true;
    const CatalogueView fetching(needs, nullptr);
    button(fetching, "Look for newer event times every few hours")->click();
    EXPECT_EQ(defaults.get<bool>(settings::fetchCatalogue), false);
}

TEST_F(CatalogueViewTest, SaysThatNoFestivalHasDates) {
    QWidget page;
    const FestivalsHint hint(needs, &page);
    EXPECT_FALSE(hint.isVisibleTo(&page)) << "not known yet";
    status.festivals = false;
    changed();
    EXPECT_TRUE(hint.isVisibleTo(&page));
    EXPECT_EQ(hint.text().toStdString(), "No festival has dates in this catalogue, so none is shown");
    status.festivals = true;
    changed();
    EXPECT_FALSE(hint.isVisibleTo(&page));
}

TEST(TimersViewAged, StandsBesideTheCount) {
    EventsSection section;
    section.active = true;
    section.segments.emplace_back().name = "Boss";
    section.sequences.pattern.push_back({0, 60});
    const auto timeline =
        std::make_shared<const Timeline>(std::get<Timeline>(computeTimeline({&section, 1}, {}, {.isTimer = true}, 0)));
    const FakeClock clock;
    FakeDefaults defaults;
    AchievementNames names([](const std::vector<std::int64_t>&) {});
    std::string aged;
    TimersView view({.source = {clock, defaults, [&] { return timeline; }, [] {},
                                [](const std::function<void()>&) { return Subscription(); }},
                     .state = [] { return DataState::ready; },
                     .progress = [] { return nullptr; },
                     .names = names,
                     .makeWaypointButton = [](const QString&, QWidget* row) { return new QWidget(row); },
                     .openWiki = {},
                     .emptyActions = {},
                     .aged = [&] { return aged; }},
                    nullptr);
    view.show();
    EXPECT_EQ(view.findChild<QLabel*>()->text().toStdString(), "3 events in the next 3 h");
    aged = "times of 3 September";
    view.refresh();
    EXPECT_EQ(view.findChild<QLabel*>()->text().toStdString(), "3 events in the next 3 h · times of 3 September");
}

}  // namespace
}  // namespace vantor

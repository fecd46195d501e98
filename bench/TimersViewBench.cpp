// The timers tab: a refresh over 5,000 occurrences, all of them in the shown window, at most 4 ms; with every minute
// changed, and with the search narrowing them.

#include <benchmark/benchmark.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollBar>

#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "timers/view/TimersView.h"

namespace vantor {
namespace {

// Each occurrence of another event, which no sharing makes cheaper.
std::shared_ptr<const Timeline> timelineOf(std::int64_t occurrences) {
    auto timeline = std::make_shared<Timeline>();
    for (std::int64_t i = 0; i < occurrences; ++i) {
        auto scheduled = std::make_shared<ScheduledEvent>();
        scheduled->event.id = i % 100;
        scheduled->event.name = "Event number " + std::to_string(i);
        scheduled->event.chatlink = "[&BEwCAAA=]";
        scheduled->event.rewards = EventRewards{{{1, 2}}, {{3}}, {}, {}};
        scheduled->sectionName = "A section of the world";
        scheduled->sectionCategory = "Heart of the Maguuma";
        const std::int64_t start = 610 + i * 340 / occurrences;
        timeline->events.push_back(
            {static_cast<double>(start) + static_cast<double>(i % 100) / 10000, start, std::move(scheduled)});
    }
    std::ranges::stable_sort(timeline->events, {}, &TimelineEvent::id);
    return timeline;
}

void refresh(benchmark::State& state) {
    int arguments = 1;
    char name[] = "bench";
    char* values[] = {name};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(arguments, values);

    FakeClock clock(600 * 60);
    FakeDefaults defaults;
    defaults.put(settings::timerWindowDuration, 6.0);
    defaults.put(settings::watching, R"(["Event number 7","Event number 9"])");
    const auto timeline = timelineOf(state.range(0));
    AchievementNames names([](const std::vector<std::int64_t>&) {});
    TimersView view({{clock, defaults, [&] { return timeline; }, [] {},
                      [](const std::function<void()>&) { return Subscription(); }},
                     [] { return DataState::ready; },
                     [] { return std::make_shared<const std::vector<AchievementCompletition>>(); },
                     names,
                     [](const QString&, QWidget* parent) { return new QWidget(parent); },
                     [](const std::string&) {},
                     {}},
                    nullptr);
    view.resize(880, 480);
    view.show();
    if (state.range(1) != 0) view.findChild<QLineEdit*>()->setText(QStringLiteral("maguuma number event"));
    QApplication::processEvents();
    int minute = 600;
    for (auto _ : state) {
        // Every remaining time becomes another one.
        minute = minute == 600 ? 601 : 600;
        clock.set(Clock::Seconds{minute} * 60);
        view.refresh();
    }
    // Whether it was a list of that length.
    const auto& list = view.list();
    state.counters["rows"] = (list.verticalScrollBar()->maximum() + list.viewport()->height()) / 58;
    state.counters["limit_ms"] = 4;
}
BENCHMARK(refresh)->Args({5000, 0})->Args({5000, 1})->Args({100, 0})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor

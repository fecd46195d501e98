// The whole catalogue to a sorted timeline: at most 200 µs, and linear in the steps.

#include <benchmark/benchmark.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "data/Decoder.h"
#include "timers/Timeline.h"

namespace vantor {
namespace {

std::vector<EventsSection> catalogue() {
    std::ifstream file(VANTOR_SOURCE_DIR "/resources/catalogue/events.json");
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    auto sections = decodeJson<std::vector<EventsSection>>(text);
    if (!sections.value) throw std::runtime_error(sections.error);
    return *std::move(sections.value);
}

std::vector<AchievementCompletition> progress(std::int64_t records) {
    std::vector<AchievementCompletition> made(static_cast<std::size_t>(records));
    for (std::size_t i = 0; i < made.size(); ++i) {
        made[i].id = static_cast<std::int64_t>(i);
        made[i].done = i % 2 == 0;
    }
    return made;
}

void report(benchmark::State& state, const Timeline& timeline, double limit) {
    state.counters["occurrences"] = static_cast<double>(timeline.events.size());
    if (limit > 0) state.counters["limit_us"] = limit;
}

// Arguments: whether every filter is on; the number of the player's progress records.
void wholeCatalogue(benchmark::State& state) {
    const auto sections = catalogue();
    const auto done = progress(state.range(1));
    TimerFilters filters;
    if (state.range(0)) filters = {true, true, true, true, true, true, true};
    Timeline timeline;
    for (auto _ : state) {
        timeline = std::get<Timeline>(computeTimeline(sections, done, filters, 7200));
        benchmark::DoNotOptimize(timeline);
    }
    report(state, timeline, 200);
}
BENCHMARK(wholeCatalogue)->Args({0, 0})->Args({0, 8000})->Args({1, 8000})->Unit(benchmark::kMicrosecond);

// So many steps, of so many events.
void steps(benchmark::State& state) {
    EventsSection section;
    section.active = true;
    const std::int64_t events = state.range(1);
    for (std::int64_t id = 0; id < events; ++id) {
        Event event;
        event.id = id;
        event.name = "Boss";
        section.segments.push_back(event);
    }
    for (std::int64_t step = 0; step < state.range(0); ++step) section.sequences.pattern.push_back({step % events, 2});
    const std::vector sections{section};
    Timeline timeline;
    for (auto _ : state) {
        timeline = std::get<Timeline>(computeTimeline(sections, {}, {.isTimer = true}, 0));
        benchmark::DoNotOptimize(timeline);
    }
    report(state, timeline, 0);
}
BENCHMARK(steps)
    ->Args({1000, 1000})
    ->Args({10000, 1000})
    ->Args({100000, 1000})
    ->Args({1000000, 1000})
    ->Args({500000, 1000})
    ->Args({1000000, 1000000})
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vantor

// Learning the key map: at most 5 ms. Typing 100 strokes: its pauses plus at most 3 %, measured on the system's own
// clock with a poster that only counts, and, where DISPLAY names a server that it may type into
// (VANTOR_PRIVATE_DESKTOP), with the real one.

#include <benchmark/benchmark.h>

#include <QtCore/QtGlobal>
#include <chrono>
#include <string>
#include <thread>

#include "base/AtOnce.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeWorkspace.h"
#include "input/ClipboardManager.h"
#include "input/KeyStrokes.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

struct CountingPoster final : KeyPoster {
    PostVerdict post(const PostedKey&) override { return ++posts, PostVerdict::posted; }
    int posts = 0;
};

struct SystemPause final : Pause {
    void wait(std::chrono::microseconds duration) override { std::this_thread::sleep_for(duration); }
};

void learnKeyMap(benchmark::State& state, const char* name) {
    const XkbKeyboardLayout layout(name, "");
    std::size_t entries = 0;
    for (auto _ : state) entries = KeyMap::learn(layout).entries().size();
    state.counters["entries"] = static_cast<double>(entries);
    state.counters["limit_ms"] = 5;
}
BENCHMARK_CAPTURE(learnKeyMap, us, "us")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(learnKeyMap, de, "de")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(learnKeyMap, ru, "ru")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(learnKeyMap, four, "ru,us,de,gr")->Unit(benchmark::kMillisecond);

void decideStrokes(benchmark::State& state) {
    const auto map = KeyMap::learn(XkbKeyboardLayout("us", ""));
    const std::string text(100, 'A');
    for (auto _ : state) benchmark::DoNotOptimize(strokesOfText(map, text));
}
BENCHMARK(decideStrokes)->Unit(benchmark::kMicrosecond);

void typeHundredStrokes(benchmark::State& state, KeyPoster& poster) {
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    SystemPause pause;
    XkbKeyboardLayout layout("us", "");
    TaskQueueAtOnce here;
    MainThreadAtOnce after;
    ClipboardManager manager({.typist = {layout, poster, workspace, pause},
                              .monitors = monitors,
                              .workspace = workspace,
                              .typingThread = here,
                              .mainThread = after});
    const std::string text(50, 'a');  // 50 downs and 50 ups
    constexpr double pauses = 100 * 0.008;
    double total = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        manager.typeString(text);
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.SetIterationTime(seconds);
        total += seconds;
    }
    state.counters["over_pauses_%"] = (total / static_cast<double>(state.iterations()) / pauses - 1) * 100;
    state.counters["limit_%"] = 3;
}

void typeWithoutServer(benchmark::State& state) {
    CountingPoster poster;
    typeHundredStrokes(state, poster);
}
BENCHMARK(typeWithoutServer)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

void typeThroughServer(benchmark::State& state) {
    XConnection connection;
    if (!connection.hasTest() || !qEnvironmentVariableIsSet("VANTOR_PRIVATE_DESKTOP"))
        return state.SkipWithError("no private desktop: it would type into yours");
    PostedKeyRecord record;
    const XkbKeyboardLayout layout(connection);
    XTestKeyPoster poster(connection, record, layout);
    typeHundredStrokes(state, poster);
}
BENCHMARK(typeThroughServer)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor

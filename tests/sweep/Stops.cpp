#include "sweep/Stops.h"

#include <cstdio>
#include <random>
#include <thread>

#include "data/Graphemes.h"
#include "data/SessionQueue.h"
#include "fake/FakeMainThread.h"
#include "platform/linux/desktop/XcbTypingFocus.h"
#include "sweep/Samples.h"
#include "sweep/Typist.h"

namespace vantor::sweep {
namespace {

constexpr int length = 200;

std::string firstOf(const std::string& everything) {
    QString text;
    const auto letters = graphemes(QString::fromStdString(everything));
    for (int at = 0; at < length; ++at) text += letters.at(static_cast<std::size_t>(at) % letters.size());
    return text.toStdString();
}

// Stops at the n-th wait.
class StoppingPause final : public Pause {
public:
    void wait(std::chrono::microseconds) override {
        if (++waits == stopAt) stop();
    }
    unsigned waits = 0;
    unsigned stopAt = 0;
    std::function<void()> stop;
};

struct ShortPause final : Pause {
    void wait(std::chrono::microseconds) override { std::this_thread::sleep_for(std::chrono::microseconds(200)); }
};

}  // namespace

std::string Stops::faultAfter(const std::string& text, std::size_t posted, const std::string& before) {
    if (const auto after = player_.condition(); after != before) return "left " + after + " instead of " + before;
    const auto arrived = player_.typed();
    if (!text.starts_with(arrived.byEvents)) return "came as \"" + arrived.byEvents + "\"";
    if (arrived.byNotices != arrived.byEvents) return "another text by the notices";
    const auto count = graphemeCount(QString::fromStdString(arrived.byEvents));
    if (count != posted) return std::to_string(count) + " characters arrived of " + std::to_string(posted) + " posted";
    return {};
}

void Stops::count(const std::string& what, const std::string& fault) {
    ++(fault.empty() ? passed_ : failed_);
    if (!fault.empty()) std::printf("%s: %s\n", what.c_str(), fault.c_str());
}

bool Stops::report() const {
    std::printf("%d passed, %d failed\n", passed_, failed_);
    return failed_ == 0 && passed_ > 0;
}

void Stops::stopEverywhere(const LayoutName& layout) {
    const bool loaded = loadLayouts(layout.layout, layout.variant, layout.option);
    count(layout.text(), loaded ? everyStop() : "does not load");
}

std::string Stops::everyStop() {
    StoppingPause pause;
    Typist typist(pause);
    pause.stop = [&typist] { typist.clipboard.stop(); };
    const std::string text = firstOf(everythingOf(typist.clipboard.keyMap()).expected);
    const auto before = player_.condition();
    Typed typed;
    for (unsigned at = 1; typed.end != Typed::End::whole || at == 1; ++at) {
        pause.waits = 0;
        pause.stopAt = at;
        (void)player_.typed();
        typist.clipboard.typeString(text, [&typed](const Typed& done) { typed = done; });
        typist.settle();
        if (const auto fault = faultAfter(text, typed.posted, before); !fault.empty())
            return "stopped at wait " + std::to_string(at) + ": " + fault;
        if (at == 1 && typed.end == Typed::End::whole) return "was not stopped";
    }
    return {};
}

void Stops::stopAtRandom(unsigned times) {
    count("random stops", loadLayouts("de", "", "") ? randomStops(times) : "does not load");
}

std::string Stops::randomStops(unsigned times) {
    XConnection typing;
    XkbKeyboardLayout learned(typing);
    PostedKeyRecord record;
    XTestKeyPoster poster(typing, record, learned);
    XcbTypingFocus focus(XcbDesktop::connect(), 0);
    ShortPause pause;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakeMainThread mainThread;
    Player other;
    const std::string text = firstOf("Half @ Way, {then} \\ on? ");
    SessionQueue typingThread;
    ClipboardManager manager({.typist = {learned, poster, focus, pause},
                              .monitors = monitors,
                              .workspace = workspace,
                              .typingThread = typingThread,
                              .mainThread = mainThread});
    std::minstd_rand random(11);
    const auto before = player_.condition();
    for (unsigned time = 0; time < times; ++time) {
        player_.takeFocus();
        (void)player_.typed();
        (void)other.typed();
        std::size_t posted = 0;
        manager.typeString(text, [&posted](const Typed& done) { posted = done.posted; });
        const bool byFocus = random() % 2 == 0;
        // The window that has the focus by then is the one that it is typed into. It takes some 150 ms here.
        while (manager.progress().value_or(ClipboardManager::Progress()).posted == 0) std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 150'000));
        byFocus ? other.takeFocus() : manager.stop();
        while (manager.isBusy()) {
            mainThread.runAll();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        // The one stroke that was under way when the focus went.
        const auto astray = graphemeCount(QString::fromStdString(other.typedText()));
        auto fault = astray > 1 ? "typed " + std::to_string(astray) + " characters elsewhere" : std::string();
        if (fault.empty()) fault = faultAfter(text, posted - astray, before);
        if (!fault.empty()) return (byFocus ? "focus, time " : "stop, time ") + std::to_string(time) + ": " + fault;
    }
    return {};
}

}  // namespace vantor::sweep

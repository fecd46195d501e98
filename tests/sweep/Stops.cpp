#include "sweep/Stops.h"

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

using Kind = Verdict::Kind;

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

std::string Stops::faultAfter(const std::string& text, std::size_t posted, const PlayersKeyboard::Condition& before) {
    if (const auto after = keyboard_.condition(); after != before)
        return "left " + after.text() + " instead of " + before.text();
    const Receiver::Texts arrived = receiver_.take();
    if (!text.starts_with(arrived.byEvents))
        return difference(text.substr(0, arrived.byEvents.size()), arrived.byEvents);
    if (arrived.byNotifications != arrived.byEvents) return "another text by the notices";
    const auto count = graphemeCount(QString::fromStdString(arrived.byEvents));
    if (count != posted) return std::to_string(count) + " characters arrived of " + std::to_string(posted) + " posted";
    return {};
}

void Stops::stopEverywhere(const LayoutName& layout) {
    const bool loaded = keyboard_.load(layout.layout, layout.variant, layout.option);
    results_.add("stopped", layout, loaded ? everyStop() : Verdict{Kind::failed, "does not load"});
}

Verdict Stops::everyStop() {
    StoppingPause pause;
    Typist typist(pause);
    pause.stop = [&typist] { typist.clipboard().stop(); };
    const std::string text = firstOf(everythingOf(typist.keyMap()).expected);
    const auto before = keyboard_.condition();
    Typed typed;
    for (unsigned at = 1; typed.end != Typed::End::whole || at == 1; ++at) {
        pause.waits = 0;
        pause.stopAt = at;
        (void)receiver_.take();
        typist.clipboard().typeString(text, [&typed](const Typed& done) { typed = done; });
        typist.settle();
        if (const auto fault = faultAfter(text, typed.posted, before); !fault.empty())
            return {Kind::failed, "stopped at wait " + std::to_string(at) + ": " + fault};
        if (at == 1 && typed.end == Typed::End::whole) return {Kind::failed, "was not stopped"};
    }
    return {};
}

void Stops::stopAtRandom(unsigned times) {
    const LayoutName layout{"de", "", ""};
    Verdict verdict;
    if (!keyboard_.load(layout.layout, layout.variant, layout.option)) verdict = {Kind::failed, "does not load"};
    XConnection typing;
    XkbKeyboardLayout learned(typing);
    PostedKeyRecord record;
    XTestKeyPoster poster(typing, record, learned);
    XcbTypingFocus focus(XcbDesktop::connect(), 0);
    ShortPause pause;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakeMainThread mainThread;
    Receiver other;
    XConnection hand;
    const auto focusOn = [&hand](const Receiver& receiver) {
        xcb_set_input_focus(hand.get(), XCB_INPUT_FOCUS_PARENT, receiver.window(), XCB_CURRENT_TIME);
        const auto done = owned(xcb_get_input_focus_reply(hand.get(), xcb_get_input_focus(hand.get()), nullptr));
    };
    const std::string text = firstOf("Half @ Way, {then} \\ on? ");
    {
        SessionQueue typingThread;
        ClipboardManager manager({.typist = {learned, poster, focus, pause},
                                  .monitors = monitors,
                                  .workspace = workspace,
                                  .typingThread = typingThread,
                                  .mainThread = mainThread});
        std::minstd_rand random(11);
        const auto before = keyboard_.condition();
        for (unsigned time = 0; time < times && verdict.kind == Kind::exact; ++time) {
            focusOn(receiver_);
            (void)receiver_.take();
            (void)other.take();
            std::size_t posted = 0;
            manager.typeString(text, [&posted](const Typed& done) { posted = done.posted; });
            const bool byFocus = random() % 2 == 0;
            // The window that has the focus by then is the one that it is typed into. It takes some 150 ms here.
            while (manager.progress().value_or(ClipboardManager::Progress()).posted == 0) std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 150'000));
            byFocus ? focusOn(other) : manager.stop();
            while (manager.isBusy()) {
                mainThread.runAll();
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            // The one stroke that was under way when the focus went.
            const auto astray = graphemeCount(QString::fromStdString(other.take().byEvents));
            auto fault = astray > 1 ? "typed " + std::to_string(astray) + " characters elsewhere" : std::string();
            if (fault.empty()) fault = faultAfter(text, posted - astray, before);
            if (!fault.empty())
                verdict = {Kind::failed,
                           (byFocus ? "focus, time " : "stop, time ") + std::to_string(time) + ": " + fault};
        }
    }
    results_.add("random", layout, std::move(verdict));
}

}  // namespace vantor::sweep

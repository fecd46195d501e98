// The queue of what is typed under the thread sanitizer: the main thread asks, stops and looks while the typing thread
// posts. What must hold in every interleaving is counted.

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

#include "data/SessionQueue.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeWorkspace.h"
#include "input/ClipboardManager.h"

namespace vantor {

namespace {

struct CountingPoster final : KeyPoster {
    PostVerdict post(const PostedKey& key) override {
        key.down ? ++presses : --down;
        if (key.down) ++down;
        return PostVerdict::posted;
    }
    std::atomic<int> presses{0};
    int down = 0;  // the typing thread's
};

struct ShortPause final : Pause {
    void wait(std::chrono::microseconds) override { std::this_thread::yield(); }
};

struct Focus final : TypingFocus {
    bool awaitOther(std::chrono::milliseconds) override { return true; }
    bool isKept() override { return !moved; }
    std::atomic<bool> moved{false};
};

}  // namespace

TEST(TypingThread, EveryOperationEndsOnceInItsOrderAndNothingFollowsAStop) {
    FakeKeyboardLayout layout;
    layout.keys = {{{0, 0}, "a"}, {{11, modifier::shift}, "B"}};
    CountingPoster poster;
    ShortPause pause;
    Focus focus;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakeMainThread mainThread;
    std::string text;
    for (int count = 0; count < 100; ++count) text += "aB";
    {
        SessionQueue typingThread;
        ClipboardManager manager({.typist = {layout, poster, focus, pause},
                                  .monitors = monitors,
                                  .workspace = workspace,
                                  .typingThread = typingThread,
                                  .mainThread = mainThread});
        std::minstd_rand random(7);
        for (int round = 0; round < 200; ++round) {
            std::string ended;
            focus.moved = false;
            for (const char name : {'1', '2', '3'})
                manager.typeString(text, [&ended, name](const Typed&) { ended += name; });
            manager.pressReadableKeys("F1", [&](const Typed&) { ended += 'k'; });
            const auto turns = random() % 2000;
            for (unsigned turn = 0; turn < turns && manager.isBusy(); ++turn) {
                mainThread.runAll();
                const auto progress = manager.progress();
                EXPECT_LE(progress ? progress->posted : 0, 200U);
            }
            if (round % 2 == 0) {
                manager.stop();
            } else {
                focus.moved = true;
            }
            const int before = poster.presses;
            while (manager.isBusy()) mainThread.runAll();
            EXPECT_EQ(ended, "123k");
            // A stroke of the text may be under way; the combination is pressed where the keyboard is still the game's.
            EXPECT_LE(poster.presses - before, focus.moved ? 1 : 2) << round;
        }
        manager.typeString(text);
        EXPECT_TRUE(manager.finish(std::chrono::minutes(1)));
    }
    EXPECT_EQ(poster.down, 0);
}

}  // namespace vantor

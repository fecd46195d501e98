#include "app/TypingLine.h"

#include <gtest/gtest.h>

#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeTaskQueue.h"
#include "unit/Typing.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

TEST(TypingLine, IsThereFromTwoSecondsIntoATextToItsEnd) {
    Typing<FakeKeyboardLayout> system;
    FakeTaskQueue typingThread;
    FakeScheduler scheduler;
    ClipboardManager manager({.typist = {system.layout, system.poster, system.workspace, system.pause},
                              .monitors = system.monitors,
                              .workspace = system.workspace,
                              .typingThread = typingThread,
                              .mainThread = system.typingMainThread});
    bool shown = false;
    TypingLine line({manager, scheduler, [&](bool now) { shown = now; }});
    const auto following = manager.observe([&] { line.follow(); });
    const auto after = [&](std::chrono::milliseconds time) { return scheduler.advance(time), shown; };

    manager.typeString("short");
    EXPECT_FALSE(after(1500ms));
    typingThread.runAll();
    manager.typeString("long");
    EXPECT_FALSE(after(1999ms));
    EXPECT_TRUE(after(1ms));
    typingThread.runAll();
    EXPECT_FALSE(shown);
    EXPECT_EQ(typingLineText(512, 3000), "typing 512 of 3,000 · Esc stops");
}

}  // namespace
}  // namespace vantor

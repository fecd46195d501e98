// Chat links, the message that a button shows, and the emotes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakePasteboard.h"
#include "fake/FakePause.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeWorkspace.h"
#include "feedback/Appreciation.h"
#include "input/ChatLink.h"
#include "input/EmojiCommands.h"
#include "input/StatusMessage.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

constexpr KeyCode keypadEnter = 76;

class ChatTest : public testing::Test {
protected:
    void holdShift(bool held) {
        (void)monitors.pressInVantor({KeyEventType::flagsChanged, 56, held ? modifier::shift : 0, ""});
    }
    // The key codes that went down, keypad Enter as "⏎" and everything else as a dot.
    std::string typed() {
        std::string text;
        for (const PostedKey& key : std::exchange(poster.posted, {}))
            if (key.down) text += key.keyCode == keypadEnter ? "⏎" : ".";
        return text;
    }

    XkbKeyboardLayout layout{"us", ""};
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    FakePasteboard pasteboard;
    FakeDefaults defaults;
    FakeClock clock{1'000, 0};
    ClipboardManager clipboardManager{layout, poster, monitors, workspace, pause};
};

TEST_F(ChatTest, AChatLinkIsCopiedOrTypedWithTheReturnsThatTheSettingWants) {
    const std::string link = "[&BNABAAA=]";
    const ChatLinkNeeds needs{clipboardManager, pasteboard, defaults};
    EXPECT_EQ(pressChatLink(link, needs), "copied to clipboard");
    EXPECT_EQ(pasteboard.text(), link);
    defaults.put(settings::enableChatLinkReturnKey, true);
    EXPECT_EQ(pressChatLink(link, needs), "copied to clipboard");
    EXPECT_EQ(pasteboard.text(), "\n" + link + "\n");
    EXPECT_EQ(typed(), "");

    pasteboard.setText("the player's");
    holdShift(true);
    EXPECT_EQ(pressChatLink(link, needs), "typed in app");
    const std::string withReturns = typed();
    EXPECT_TRUE(withReturns.starts_with("⏎") && withReturns.ends_with("⏎")) << withReturns;
    defaults.put(settings::enableChatLinkReturnKey, false);
    holdShift(true);
    EXPECT_EQ(pressChatLink(link, needs), "typed in app");
    EXPECT_EQ("⏎" + typed() + "⏎", withReturns);
    EXPECT_EQ(pasteboard.text(), "the player's");
}

TEST_F(ChatTest, TheMakersNameIsTypedWithShiftAndCopiedWithout) {
    holdShift(true);
    pressAccountName("ab", clipboardManager, pasteboard);
    EXPECT_EQ(typed(), "..");
    EXPECT_EQ(pasteboard.text(), "");
    pressAccountName("ab", clipboardManager, pasteboard);
    EXPECT_EQ(typed(), "");
    EXPECT_EQ(pasteboard.text(), "ab");
}

TEST_F(ChatTest, AMessageUnrollsStaysForASecondAndRollsUp) {
    FakeScheduler scheduler;
    StatusMessage message(scheduler);
    message.show(QStringLiteral("ok"));
    message.show(QStringLiteral("too early"));
    EXPECT_EQ(message.text(), QString());
    const auto after = [&](std::chrono::milliseconds time) {
        scheduler.advance(time);
        return message.text().toStdString();
    };
    // "ok" and four spaces: six characters.
    EXPECT_EQ(after(0ms), "o");
    EXPECT_EQ(after(19ms), "o");
    EXPECT_EQ(after(1ms), "ok");
    EXPECT_EQ(after(80ms), "ok    ");
    message.show(QStringLiteral("still shown"));
    EXPECT_EQ(after(1'019ms), "ok    ");
    EXPECT_EQ(after(1ms), "ok   ");
    EXPECT_EQ(after(99ms), "o");
    message.show(QStringLiteral("still shown"));
    EXPECT_EQ(after(1ms), "");
    EXPECT_EQ(scheduler.waiting(), 0U);
    message.show(QStringLiteral("again"));
    EXPECT_EQ(after(0ms), "a");
}

TEST_F(ChatTest, EmotesAreOrderedByLastUseAndTypedBetweenReturns) {
    EmojiCommands commands(clipboardManager, defaults, clock);
    EXPECT_FALSE(commands.enabled());
    defaults.put(settings::enableEmojiCommands, true);
    EXPECT_TRUE(commands.enabled());

    const auto table = emojiCommands();
    ASSERT_EQ(table.size(), 28U);
    EXPECT_EQ(table.front(), (EmojiCommand{"🙇", "/bow @", "bow"}));
    EXPECT_EQ(table[6], (EmojiCommand{"👯", "/dance *", "start dancing at next sync time (max 5s)"}));
    EXPECT_EQ(table[11].id, "\u2620\uFE0F");
    EXPECT_EQ(table.back(), (EmojiCommand{"👍", "/yes @", "agree"}));
    EXPECT_THAT(commands.ordered(), testing::ElementsAreArray(table));

    commands.use(table[26]);
    EXPECT_EQ(typed(), "⏎" + std::string(7, '.') + ".⏎") << "/wave and its at sign with Shift";
    clock.advance(1);
    commands.use(table[19]);
    auto ordered = EmojiCommands(clipboardManager, defaults, clock).ordered();
    EXPECT_EQ(ordered[0].command, "/sit");
    EXPECT_EQ(ordered[1].command, "/wave @");
    EXPECT_EQ(ordered[2].command, "/bow @");
    EXPECT_EQ(ordered.size(), 28U);
    EXPECT_EQ(defaults.get<double>("emoji.👋.time"), 1'000.0);
    // A value of another type is none.
    defaults.put("emoji.🪑.time", std::string("yesterday"));
    EXPECT_EQ(commands.ordered()[0].command, "/wave @");
}

}  // namespace
}  // namespace vantor

// Chat links, the message that a button shows, and the emotes.

#include <gmock/gmock.h>

#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakePasteboard.h"
#include "fake/FakeScheduler.h"
#include "feedback/Appreciation.h"
#include "input/ChatLink.h"
#include "input/EmojiCommands.h"
#include "input/StatusMessage.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "unit/Typing.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

class ChatTest : public testing::Test, protected Typing<XkbKeyboardLayout> {
protected:
    ChatTest() : Typing("us", "") {}
    // The key codes that went down, keypad Enter as "⏎" and everything else as a dot.
    std::string typed() {
        std::string text;
        for (const PostedKey& key : std::exchange(poster.posted, {}))
            if (key.down) text += key.keyCode == 76 ? "⏎" : ".";
        return text;
    }

    FakePasteboard pasteboard;
    FakeDefaults defaults;
    FakeClock clock{1'000, 0};
};

TEST_F(ChatTest, AChatLinkIsCopiedOrTypedWithTheReturnsThatTheSettingWants) {
    const std::string link = "[&BNABAAA=]";
    const ChatLinkNeeds needs{manager, pasteboard, defaults};
    const auto press = [&](bool shift = false) {
        std::string shown;
        pressChatLink(link, needs, shift, [&](const std::string& message) { shown = message; });
        return shown;
    };
    EXPECT_EQ(press(), "copied to clipboard");
    EXPECT_EQ(pasteboard.text(), link);
    // While nothing but a default leaves the returns out, the first time says so.
    for (const char* message : {"typed without ENTER; switch it in Settings", "typed in app"})
        EXPECT_EQ(press(true), message);
    (void)typed();
    defaults.put(settings::enableChatLinkReturnKey, true);
    EXPECT_EQ(press(), "copied to clipboard");
    EXPECT_EQ(pasteboard.text(), "\n" + link + "\n");
    EXPECT_EQ(typed(), "");

    pasteboard.setText("the player's");
    holdShift(true);
    EXPECT_EQ(press(), "typed in app");
    const std::string withReturns = typed();
    EXPECT_TRUE(withReturns.starts_with("⏎") && withReturns.ends_with("⏎")) << withReturns;
    defaults.put(settings::enableChatLinkReturnKey, false);
    holdShift(true);
    EXPECT_EQ(press(), "typed in app");
    EXPECT_EQ("⏎" + typed() + "⏎", withReturns);
    EXPECT_EQ(pasteboard.text(), "the player's");

    // So is the maker's name.
    holdShift(true);
    pressAccountName("ab", manager, pasteboard);
    EXPECT_EQ(typed(), "..");
    EXPECT_EQ(pasteboard.text(), "the player's");
    pressAccountName("ab", manager, pasteboard);
    EXPECT_EQ(typed(), "");
    EXPECT_EQ(pasteboard.text(), "ab");
}

TEST_F(ChatTest, AMessageUnrollsStaysForASecondAndRollsUp) {
    FakeScheduler scheduler;
    StatusMessage message(scheduler);
    const auto after = [&](std::chrono::milliseconds time) {
        scheduler.advance(time);
        return message.text().toStdString();
    };
    message.show(QStringLiteral("ok"));
    message.show(QStringLiteral("too early"));
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
    message.show(QStringLiteral("👍🏽"));
    EXPECT_EQ(after(0ms), "👍🏽") << "nothing by halves";
    EXPECT_EQ(after(1'179ms), "👍🏽");
    EXPECT_EQ(after(1ms), "");
}

TEST_F(ChatTest, EmotesAreOrderedByLastUseAndTypedBetweenReturns) {
    EmojiCommands commands(manager, defaults, clock);
    EXPECT_FALSE(commands.enabled());
    defaults.put(settings::enableEmojiCommands, true);
    EXPECT_TRUE(commands.enabled());

    const auto table = emojiCommands();
    EXPECT_THAT(commands.ordered(), testing::ElementsAreArray(table));
    const auto named = [&](const char* command) { return *std::ranges::find(table, command, &EmojiCommand::command); };
    commands.use(named("/wave @"));
    EXPECT_EQ(typed(), "⏎" + std::string(7, '.') + ".⏎") << "/wave and its at sign with Shift";
    clock.advance(1);
    commands.use(named("/sit"));
    const auto first = [&] {
        const auto ordered = commands.ordered();
        return std::vector{ordered[0].command, ordered[1].command, ordered[2].command};
    };
    EXPECT_THAT(first(), testing::ElementsAre("/sit", "/wave @", "/bow @"));
    EXPECT_EQ(commands.ordered().size(), table.size());
    // The stored form; a value of another type is none.
    EXPECT_EQ(defaults.get<double>("emoji.👋.time"), 1'000.0);
    defaults.put("emoji.🪑.time", std::string("yesterday"));
    EXPECT_THAT(first(), testing::ElementsAre("/wave @", "/bow @", "/cheer @"));
}

}  // namespace
}  // namespace vantor

// From an empty home to the first times: the key's field, the times without a key, the first steps, hotkeys in words.

#include <gmock/gmock.h>

#include "app/ApiKeyField.h"
#include "app/FirstSteps.h"
#include "app/GameData.h"
#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeMainThread.h"
#include "fake/FakePasteboard.h"
#include "fake/FakePause.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "fake/FakeWorkspace.h"
#include "input/ChatLink.h"
#include "input/PcKeyWords.h"
#include "timers/AchievementBlock.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Trouble = ApiKeyField::Trouble;

class FirstMinuteTest : public testing::Test {
protected:
    void settle() {
        do queue.runAll();
        while (mainThread.runAll() > 0);
    }
    void answer(std::optional<std::string> body) {
        ASSERT_TRUE(session.answer(std::move(body)));
        settle();
    }
    // What was asked for since the last look.
    std::vector<std::string> asked() {
        std::vector<std::string> urls;
        const auto all = session.requests();
        for (; seen < all.size(); ++seen) urls.push_back(all[seen].url);
        return urls;
    }
    std::unique_ptr<GameData> start() {
        auto data = std::make_unique<GameData>(GameData::Needs{defaults,
                                                               session,
                                                               queue,
                                                               mainThread,
                                                               clock,
                                                               {"https://api", "https://static"},
                                                               [](const std::string&) {},
                                                               [](const std::string&) {}});
        data->start();
        settle();
        return data;
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeClock clock;
    std::size_t seen = 0;
    ApiKeyField field{defaults, {session, mainThread, "https://api", [](const std::string&) {}}, [] {}};
};

TEST_F(FirstMinuteTest, TheKeysFieldSaysWhichPermissionAKeyLacks) {
    const std::string account = R"({"id":"1","name":"n","access":[]})";
    const auto check = [&](const std::string& first, const std::optional<std::string>& tokenInfo) {
        field.edit();
        field.type("KEY");
        field.confirm();
        answer(first);
        EXPECT_EQ(asked().back(), "https://api/v2/tokeninfo?access_token=KEY");
        answer(tokenInfo);
        EXPECT_EQ(field.modText(), "KEY");
        EXPECT_FALSE(field.isChecking());
        return field.trouble();
    };
    EXPECT_EQ(check(account, R"({"permissions":["account","guilds"]})"), Trouble::lacksPermission);
    EXPECT_THAT(field.missingPermissions(), ElementsAre("progression"));
    EXPECT_EQ(check(R"({"text":"requires scope account"})", R"({"permissions":[]})"), Trouble::lacksPermission);
    EXPECT_THAT(field.missingPermissions(), ElementsAre("account", "progression"));
    EXPECT_EQ(check(account, std::nullopt), Trouble::lacksPermission);
    EXPECT_THAT(field.missingPermissions(), IsEmpty());
    EXPECT_EQ(check(account, R"({"permissions":["progression","account"]})"), Trouble::noAnswer) << "a fault of theirs";

    field.confirm();
    answer(account);
    field.cancel();
    answer(R"({"permissions":[]})");
    EXPECT_EQ(field.trouble(), Trouble::none) << "told after the player went back";
    field.edit();
    field.type("");
    field.confirm();
    EXPECT_EQ(field.trouble(), Trouble::notAKey);
    EXPECT_EQ(session.waiting(), 0U);
}

TEST_F(FirstMinuteTest, WhiteSpaceAroundWhatIsPastedIsLeftOut) {
    struct Edit {
        const char *before, *after, *becomes;
    };
    for (const auto& [before, after, becomes] :
         {Edit{"", " \tKEY-1\r\n", "KEY-1"}, Edit{"KEY", "KEY\n", "KEY"}, Edit{"AZ", "A KEY\u00A0Z", "AKEYZ"},
          Edit{"KEY", "KEY ", "KEY "}, Edit{"KEY", " KEY", " KEY"}, Edit{"A B", "A BC", "A BC"},
          Edit{"AB", "A", "A"}}) {
        field.type("");
        for (const char letter : std::string(before)) field.type(field.modText() + letter);
        field.type(after);
        EXPECT_EQ(field.modText(), becomes) << after;
    }
}

TEST_F(FirstMinuteTest, TheTimesComeWithoutAKeyOnceThePlayerWantsThatAndTheKeyTakesTheirPlace) {
    const std::vector<std::string> withoutKey{"https://static/events.json", "https://static/categories/beasts.json"};
    const char* const progress = "https://api/v2/account/achievements";
    auto data = start();
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_EQ(data->timersState(), DataState::noKey);

    data->showWithoutProgress();
    settle();
    EXPECT_EQ(asked(), withoutKey);
    EXPECT_EQ(data->timersState(), DataState::loading);
    answer("[]");
    answer(R"([{"id":"animals","races":[]}])");
    EXPECT_EQ(data->timersState(), DataState::ready);
    EXPECT_EQ(data->bestiaryState(), DataState::ready);
    EXPECT_FALSE(data->progressKnown());
    EXPECT_EQ(progressLook({}, 1, data->progressKnown()).text, "needs your key");

    data = start();
    EXPECT_EQ(asked(), withoutKey) << "remembered";
    answer(std::nullopt);
    answer(std::nullopt);
    EXPECT_EQ(data->bestiaryState(), DataState::failed);

    defaults.put(settings::apiKey, std::string("KEY"));
    data->restart();
    settle();
    EXPECT_THAT(asked(), ElementsAre(progress));
    answer("[]");
    EXPECT_TRUE(data->progressKnown());
}

TEST_F(FirstMinuteTest, TheFirstStepsFollowTheSettings) {
    defaults.put(settings::windowToggleEvent, std::string(" "));
    EXPECT_TRUE(readFirstSteps(defaults).areUntouched() && isIconUnexplained(defaults));
    defaults.put(settings::windowToggleSecondaryEvent, std::string("F5"));
    EXPECT_TRUE(readFirstSteps(defaults).isDone(FirstStep::hotkey));
    EXPECT_FALSE(isIconUnexplained(defaults)) << "who has a hotkey is not new here";
    defaults.put(settings::watching, std::string(R"(["Dragon"])"));
    EXPECT_FALSE(readFirstSteps(defaults).areOver());
    defaults.put(settings::timerWithoutProgress, true);
    EXPECT_TRUE(readFirstSteps(defaults).areOver() && !readFirstSteps(defaults).isDone(FirstStep::key));
}

TEST(PcKeyWords, SpellStoredHotkeys) {
    for (const auto& [stored, words] :
         std::vector<std::pair<std::string, std::string>>{{"⌃ + ⇧ + T", "Ctrl + Shift + T"},
                                                          {"⌘ + V", "Super (Windows key) + V"},
                                                          {"⌃ + ⌥ + +", "Ctrl + Alt + +"},
                                                          {"fn + ⇪ + A", "Fn + Caps Lock + A"},
                                                          {"numpad ↩︎", "Numpad Enter"},
                                                          {"⇧ + numpad 5", "Shift + Numpad 5"},
                                                          {"⇧ + →", "Shift + Right"},
                                                          {"F1", "F1"},
                                                          {"\t", "Tab"},
                                                          {"⇧", "⇧"},
                                                          {" ", ""},
                                                          {"", ""}})
        EXPECT_EQ(pcKeyWords(stored), words) << stored;
}

TEST_F(FirstMinuteTest, TheFirstShiftClickSaysThatNoEnterWasTyped) {
    FakeKeyboardLayout layout;
    FakeKeyPoster poster;
    FakeKeyMonitors monitors;
    FakeWorkspace workspace;
    FakePause pause;
    FakePasteboard pasteboard;
    ClipboardManager typist(layout, poster, monitors, workspace, pause);
    const ChatLinkNeeds needs{typist, pasteboard, defaults};
    for (const char* said : {"typed without ENTER; switch it in Settings", "typed in app"})
        EXPECT_EQ(pressChatLink("a", needs, true), said);
}

}  // namespace
}  // namespace vantor

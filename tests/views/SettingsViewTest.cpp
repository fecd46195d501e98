// The settings panel as a player uses it: what it says, what each control stores, the key's field and the accounts.

#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <algorithm>
#include <tuple>

#include "Overlay.h"
#include "app/view/SettingsView.h"
#include "data/SettingKeys.h"
#include "timers/view/TimerSettingsView.h"
#include "ui/Collapse.h"
#include "ui/GW2Slider.h"
#include "ui/SectionTitle.h"
#include "ui/TextBlock.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string account =
    R"({"id":"1","name":"n.1","age":1,"world":1,"created":"c","access":[],"guilds":[],"commander":false,
        "fractal_level":1,"daily_ap":1,"monthly_ap":1,"wvw_rank":1})";
const std::string noAnswer = "The game's web API does not answer. The stored key is unchanged.";

class SettingsViewTest : public Overlay {
protected:
    void openPage(const char* page) {
        launch();
        panel = below<SettingsView>(Overlay::open(tab_position::settings)).at(0);
        press(*panel, page);
    }
    QLineEdit& keyField() { return named<QLineEdit>(*panel, "Insert API Key"); }
    // Types it, confirms it, and answers what the web API is asked.
    void confirm(const char* key, const std::optional<std::string>& body) {
        fillIn(keyField(), QString::fromLatin1(key));
        press(*panel, "Confirm");
        EXPECT_FALSE(named(*panel, "Confirm").isEnabled());
        answer([&](const std::string& url) { return url.ends_with(key) ? body : std::nullopt; });
    }
    [[nodiscard]] auto accounts() { return observer().credentials().accounts(); }

    SettingsView* panel = nullptr;
};

TEST_F(SettingsViewTest, ShowsItsSectionsInOrderAndStoresEachSwitchAtOnce) {
    openPage("General");
    EXPECT_THAT(heard<SectionTitle>(*panel), ElementsAre("Application", "Chat commands", "Chat links", "API Key",
                                                         "What Vantor needs on this machine"));
    EXPECT_THAT(heard(*panel), testing::IsSupersetOf({"Window toggle", "Toggle action cam",
                                                      "to type chat link automatically press SHIFT (⇧) + CLICK"}));
    for (const auto& [text, setting, byDefault] :
         {std::tuple("Enable pasting (⌘ + V) if GW2 is missing system clipboard support", settings::pasteClipboard,
                     false),
          {"Enable chat command selection through emoji quick menu", settings::enableEmojiCommands, false},
          {"Press ENTER (⏎) automatically before and after automatic chat link typing",
           settings::enableChatLinkReturnKey, true}}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(named(*panel, text).isChecked(), byDefault);
        EXPECT_EQ(defaults.get<bool>(setting), std::nullopt);
        press(*panel, text);
        EXPECT_EQ(defaults.get<bool>(setting), !byDefault);
    }
}

TEST_F(SettingsViewTest, ExplainsTheKeyAndOpensItsLinks) {
    openPage("General");
    for (Collapse* const collapse : below<Collapse>(*panel)) collapse->setExpanded(true);
    (void)picture(*panel);
    for (TextBlock* const text : below<TextBlock>(*panel)) {
        if (!text->text().contains(QLatin1String("<a "))) continue;
        click(*text, {}, QPoint(2, 2));
        EXPECT_FALSE(text->hasFocus()) << "the keyboard alone brings it there";
        text->setFocus(Qt::TabFocusReason);
        sendKey(*text, Qt::Key_Tab);
        sendKey(*text, Qt::Key_Return);
    }
    EXPECT_THAT(opened, ElementsAre("https://wiki/wiki/API:API_key", "https://account/applications"));
}

TEST_F(SettingsViewTest, TakesAKeyOverOnceTheWebApiTakesIt) {
    defaults.put(settings::apiKey, std::string("OLD"));
    openPage("General");
    answer([](const auto&) { return std::nullopt; });
    const auto stored = [this] { return defaults.get<std::string>(settings::apiKey); };
    EXPECT_THAT(heard(*panel), Not(Contains(HasSubstr("OLD")))) << "over a shoulder";
    press(*panel, "Show the API key");
    EXPECT_THAT(heard(*panel), Contains("OLD"));
    press(*panel, "Edit");
    EXPECT_EQ(keyField().text(), QStringLiteral("OLD"));
    confirm("NEW", "{}");
    EXPECT_EQ(keyField().text(), QStringLiteral("Invalid API key"));
    EXPECT_EQ(keyField().selectedText(), keyField().text()) << "what is pasted next replaces it";
    EXPECT_EQ(stored(), "OLD");

    // What is said then is in sight, though the key's field was the last thing that was.
    const QWidget& button = named(*panel, "Confirm");
    auto& page = *below<QScrollArea>(*panel).at(0);
    MainWindow& window = mainWindow();
    window.resize(window.width(), window.minimumHeight());
    settle();
    page.verticalScrollBar()->setValue(button.mapTo(page.widget(), QPoint(0, button.height())).y() - page.height());
    confirm("NEWER", std::nullopt);
    EXPECT_EQ(keyField().text(), QStringLiteral("NEWER"));
    const QWidget& line = named<TextBlock>(*panel, noAnswer);
    EXPECT_LE(line.mapTo(&page, QPoint(0, line.height())).y(), page.height());

    const std::size_t before = session.requests().size();
    confirm("NEWER", account);
    EXPECT_THAT(heard(*panel), testing::AllOf(Contains("Edit"), Not(Contains("Confirm")), Not(Contains("NEWER"))));
    EXPECT_EQ(stored(), "NEWER");
    EXPECT_GT(session.requests().size(), before + 1) << "all is loaded with it";

    press(*panel, "Edit");
    fillIn(keyField(), QStringLiteral("X"));
    press(*panel, "Cancel");
    press(*panel, "Show the API key");
    EXPECT_THAT(heard(*panel), Contains("NEWER"));
    EXPECT_EQ(session.waiting(), 0U);
}

TEST_F(SettingsViewTest, NamesWhatTheMachineLacksFirstAndFollowsWhatThePlayerAllows) {
    openPage("General");
    const auto all = heard(*panel);
    EXPECT_THAT(all, Contains("One thing is missing; the rest goes on working without it."));
    EXPECT_LT(std::ranges::find(all, "Web pages"), std::ranges::find(all, "Status bar"));
    capabilities[1].ask = [this] { capabilities[1].have = true; };
    press(*panel, "Timers");
    press(*panel, "General");
    press(*panel, "Allow: Web pages");
    EXPECT_TRUE(comesTrue([&] { return std::ranges::count(heard(*panel), "Everything is here.") == 1; }));
    EXPECT_EQ(plainCapability({CapabilityKind::posting, true, "XTEST"}).sentence, "works");

    keychain.isLocked = true;
    launch();
    EXPECT_FALSE(keyringCapability(observer().credentials()).have);
    keychain.isLocked = false;
    launch();
    keychain.failing = KeychainStatus::unavailable;
    EXPECT_TRUE(observer().credentials().save());
    EXPECT_FALSE(keyringCapability(observer().credentials()).have) << "the last change is lost with the program";
}

TEST_F(SettingsViewTest, TheTimersPageStoresItsFiltersReloadsAndKeepsItsValuesFromTheWheel) {
    openPage("Timers");
    const auto& page = *below<TimerSettingsView>(*panel).at(0);
    std::vector<std::string> controls;
    for (auto* const each : below<QAbstractButton>(page)) {
        if (!each->isVisible()) continue;
        controls.push_back(heardOf(*each) + (each->isChecked() ? " on" : ""));
        EXPECT_GE(each->height(), each->sizeHint().height()) << heardOf(*each);
    }
    EXPECT_THAT(controls,
                ElementsAre("is timer (Day/Night cycle, etc)", "is event on", "has guaranteed rewards",
                            "can drop valuable items", "has associated achievements", "drops collections items",
                            "is temporary special event", "Reload events", "Read my files"));
    press(page, "has associated achievements");
    EXPECT_EQ(defaults.get<bool>(settings::timerHasAchievements), true);
    for (GW2Slider* const slider : below<GW2Slider>(page)) {
        turnWheel(*slider, *slider);
        EXPECT_EQ(slider->shownValue(), 3);
    }
    const auto updated = [&] { return std::ranges::count(heard(page), "Timers updated!"); };
    EXPECT_EQ(updated(), 0);
    press(page, "Reload events");
    EXPECT_EQ(updated(), 1);
    EXPECT_TRUE(comesTrue([&] { return updated() == 0; })) << "for a few seconds";
}

TEST_F(SettingsViewTest, AddsFillsAndDeletesAccounts) {
    layout.keys = {{{11, 0}, "b"}, {{20, 0}, "2"}};
    openPage("Accounts");
    EXPECT_THAT(heard<SectionTitle>(*panel), ElementsAre("My accounts credentials", "Add new account"));
    const std::string hint =
        "Add your account credentials to autofill login data from here or from system top status bar!";
    EXPECT_THAT(heard(*panel), Contains(hint));
    auto& username = named<QLineEdit>(*panel, "Username");
    auto& password = named<QLineEdit>(*panel, "Password");
    const auto add = [&](const std::string& name, const char* secret) {
        fillIn(username, QString::fromStdString(name));
        fillIn(password, QString::fromUtf8(secret));
        EXPECT_NE(password.displayText(), QString::fromUtf8(secret)) << "over a shoulder";
        press(*panel, "Add account");
        EXPECT_EQ(username.text() + password.text(), QString());
    };
    add("a", "1");
    add("b", "2");
    add("<i>c</i>", "0");
    add("a", "3");
    EXPECT_EQ(accounts(), (AccountsCredentials::Accounts{{"<i>c</i>", "0"}, {"a", "3"}, {"b", "2"}}));
    EXPECT_THAT(heard(*panel), Not(Contains(hint)));
    press(*panel, "Fill credentials of b");
    EXPECT_THAT(typed(), testing::IsSupersetOf({11, 20}));
    press(*panel, "Delete b");
    EXPECT_THAT(heard(*panel), Not(Contains("b")));
    EXPECT_THAT(keychain.calls.back(), R"(add {"<i>c</i>":"0","a":"3"})");

    const std::string longName(200, 'w');
    add(longName, "4");
    for (const auto* const button : below<QAbstractButton>(*panel))
        EXPECT_TRUE(!button->isVisible() || button->mapTo(panel, QPoint(button->width(), 0)).x() <= panel->width());
    EXPECT_THAT(heard<TextBlock>(*panel), Contains(HasSubstr(">" + longName))) << "where it is pointed at";
    // Where nothing can be stored, nothing is shown as if it were.
    observer().credentials().set("\xff", "");
    add("lost", "5");
    EXPECT_THAT(accounts(), Not(Contains(testing::Key("lost"))));
    EXPECT_THAT(printed, ElementsAre(HasSubstr("UTF-8")));

    // What the keyring tells late is shown too.
    keychain.items.begin()->second = R"({"late":"x"})";
    keychain.holdBack = true;
    openPage("Accounts");
    EXPECT_THAT(heard(*panel), Contains(hint));
    keychain.answerAll();
    settle();
    EXPECT_THAT(heard(*panel), Contains("late"));
}

}  // namespace
}  // namespace vantor

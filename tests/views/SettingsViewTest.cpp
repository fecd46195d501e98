// The settings panel as a player uses it: what it says, what each control stores, the key's field and the accounts.

#include <gmock/gmock.h>

#include <QtCore/QEvent>
#include <QtCore/QRegularExpression>
#include <QtGui/QKeyEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <algorithm>

#include "accounts/view/AccountsView.h"
#include "app/view/SettingsView.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeychain.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "timers/view/TimerSettingsView.h"
#include "ui/GW2Slider.h"
#include "ui/SectionTitle.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Words = std::vector<std::string>;

const std::string account =
    R"({"id":"1","name":"n.1","age":1,"world":1,"created":"c","access":[],"guilds":[],"commander":false,
        "fractal_level":1,"daily_ap":1,"monthly_ap":1,"wvw_rank":1})";

class SettingsViewTest : public testing::Test {
protected:
    SettingsView& open() {
        credentials.emplace(keychain, [this](const std::string& line) { printed.push_back(line); });
        key.emplace(defaults, ApiKeyCheck::Needs{session, mainThread, "https://api.example", [](const auto&) {}},
                    [this] { ++accepted; });
        const auto makePage = [this](const char* name) {
            return [this, name](QWidget* parent) {
                made.emplace_back(name);
                return new QWidget(parent);
            };
        };
        panel = std::make_unique<SettingsView>(
            SettingsView::Needs{
                defaults,
                *key,
                [this](const HotkeySetting& setting, QWidget* parent) {
                    hotkeys.push_back(setting.message.toStdString() + " " + std::string(setting.primaryKey) + " " +
                                      std::string(setting.secondaryKey));
                    return new QWidget(parent);
                },
                makePage("timers"),
                [this](QWidget* parent) {
                    return new AccountsView(
                        *credentials, [this](const std::string& name) { filled.push_back(name); }, parent);
                },
                [this] { return capabilities; },
                [this](const QString& link) { opened.push_back(link.toStdString()); },
                {QStringLiteral("https://wiki.example"), QStringLiteral("https://account.example")}},
            nullptr);
        panel->resize(880, 500);
        panel->show();
        settle();
        return *panel;
    }
    // Also what the events post.
    static void settle() {
        for (int turn = 0; turn < 4; ++turn) QApplication::processEvents();
    }
    // Of the widgets that are shown, also those that are scrolled away, from top to bottom.
    template <typename Widget, typename Text>
    [[nodiscard]] Words shown(const Text& textOf) const {
        Words words;
        for (QWidget* const each : panel->findChildren<QWidget*>())
            if (auto* const widget = dynamic_cast<Widget*>(each); widget && widget->isVisible())
                if (const QString text = textOf(*widget); !text.isEmpty()) words.push_back(text.toStdString());
        return words;
    }
    [[nodiscard]] Words sections() const {
        return shown<SectionTitle>([](const SectionTitle& title) { return title.text(); });
    }
    [[nodiscard]] Words texts() const {
        return shown<QLabel>([](const QLabel& label) { return label.text(); });
    }
    [[nodiscard]] Words buttons() const {
        return shown<QAbstractButton>([](const QAbstractButton& button) { return button.text(); });
    }
    [[nodiscard]] QAbstractButton& button(const QString& name, int number = 0) const {
        for (QWidget* const each : panel->findChildren<QWidget*>()) {
            auto* const found = dynamic_cast<QAbstractButton*>(each);
            if (found && found->isVisible() && (found->text() == name || found->accessibleName() == name) &&
                number-- == 0)
                return *found;
        }
        throw std::runtime_error("no button " + name.toStdString());
    }
    [[nodiscard]] QLineEdit& field(const QString& placeholder) const {
        for (QLineEdit* const each : panel->findChildren<QLineEdit*>())
            if (each->isVisible() && each->placeholderText() == placeholder) return *each;
        throw std::runtime_error("no field " + placeholder.toStdString());
    }
    void click(const QString& name, int number = 0) const {
        button(name, number).click();
        settle();
    }
    static void type(QLineEdit& field, const QString& text) {
        field.setFocus();
        field.selectAll();
        for (const QChar each : text) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(each));
            QApplication::sendEvent(&field, &press);
        }
    }
    void answer(std::optional<std::string> body) {
        ASSERT_TRUE(session.answer(std::move(body)));
        queue.runAll();
        mainThread.runAll();
        settle();
    }
    [[nodiscard]] std::string storedKey() const {
        return defaults.get<std::string>(settings::apiKey).value_or("unset");
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeKeychain keychain;
    std::optional<AccountsCredentials> credentials;
    std::optional<ApiKeyField> key;
    std::vector<SystemCapability> capabilities{{"Status bar", true, "is there"}, {"Web pages", false, "install it"}};
    Words made, hotkeys, opened, filled, printed;
    int accepted = 0;
    std::unique_ptr<SettingsView> panel;
};

const QString pasting = QStringLiteral("Enable pasting (⌘ + V) if GW2 is missing system clipboard support");
const QString emotes = QStringLiteral("Enable chat command selection through emoji quick menu");
const QString enter = QStringLiteral("Press ENTER (⏎) automatically before and after automatic chat link typing");

TEST_F(SettingsViewTest, ShowsItsSectionsInOrderAndStoresEachSwitchAtOnce) {
    open();
    EXPECT_THAT(sections(), ElementsAre("Application", "Chat commands", "Chat links", "API Key",
                                        "What Vantor needs on this machine"));
    EXPECT_THAT(hotkeys, ElementsAre("Window toggle general.windowToggleEvent general.windowToggleSecondaryEvent",
                                     "Toggle action cam general.actionCamToggleEvent "));
    EXPECT_THAT(texts(), testing::IsSupersetOf({"Window toggle", "Toggle action cam",
                                                "to type chat link automatically press SHIFT (⇧) + CLICK"}));
    const std::vector<std::tuple<QString, std::string_view, bool>> switches{
        {pasting, settings::pasteClipboard, false},
        {emotes, settings::enableEmojiCommands, false},
        {enter, settings::enableChatLinkReturnKey, true}};
    for (const auto& [text, setting, byDefault] : switches) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(button(text).isChecked(), byDefault);
        EXPECT_EQ(defaults.get<bool>(setting), std::nullopt);
        click(text);
        EXPECT_EQ(defaults.get<bool>(setting), !byDefault);
    }
    EXPECT_THAT(made, IsEmpty());
    panel->select(SettingsView::Page::timers);
    EXPECT_THAT(made, ElementsAre("timers"));
}

TEST_F(SettingsViewTest, ExplainsTheKeyAndOpensItsLinks) {
    open();
    for (const char* title : {"What is an API key?", "Why should I use it?", "How do I get my API key?"})
        click(QString::fromUtf8(title));
    for (QLabel* const label : panel->findChildren<QLabel*>()) {
        if (!label->isVisible() || label->textFormat() != Qt::RichText) continue;
        const auto link = QRegularExpression(QStringLiteral("href=\"([^\"]*)\"")).match(label->text());
        if (link.hasMatch()) label->linkActivated(link.captured(1));
    }
    EXPECT_THAT(opened, ElementsAre("https://wiki.example/wiki/API:API_key", "https://account.example/applications"));
}

TEST_F(SettingsViewTest, TakesAKeyOverOnceTheWebApiTakesIt) {
    defaults.put(settings::apiKey, std::string("OLD"));
    open();
    EXPECT_THAT(texts(), Not(Contains("OLD")));
    click(QStringLiteral("Show"));
    EXPECT_THAT(texts(), Contains("OLD"));
    click(QStringLiteral("Edit"));
    EXPECT_EQ(field(QStringLiteral("Insert API Key")).text(), QStringLiteral("OLD"));
    EXPECT_THAT(texts(), Not(Contains("OLD")));
    type(field(QStringLiteral("Insert API Key")), QStringLiteral("NEW"));
    click(QStringLiteral("Confirm"));
    EXPECT_FALSE(button(QStringLiteral("Confirm")).isEnabled());
    answer("{}");
    auto& editor = field(QStringLiteral("Insert API Key"));
    EXPECT_EQ(editor.text(), QStringLiteral("Invalid API key"));
    EXPECT_EQ(editor.selectedText(), editor.text());  // what is pasted next replaces it
    EXPECT_EQ(storedKey(), "OLD");

    type(editor, QStringLiteral("NEWER"));
    click(QStringLiteral("Confirm"));
    answer(std::nullopt);
    EXPECT_EQ(editor.text(), QStringLiteral("NEWER"));
    EXPECT_THAT(texts(), Contains("The game's web API does not answer. The stored key is unchanged."));
    click(QStringLiteral("Confirm"));
    answer(account);
    click(QStringLiteral("Show"));
    EXPECT_THAT(texts(), Contains("NEWER"));
    EXPECT_THAT(buttons(), Contains("Edit"));
    EXPECT_THAT(buttons(), Not(Contains("Confirm")));
    EXPECT_EQ(storedKey(), "NEWER");
    EXPECT_EQ(accepted, 1);

    click(QStringLiteral("Edit"));
    type(field(QStringLiteral("Insert API Key")), QStringLiteral("X"));
    click(QStringLiteral("Cancel"));
    EXPECT_THAT(texts(), Not(Contains("NEWER"))) << "hidden again";
    EXPECT_EQ(session.waiting(), 0U);
}

TEST_F(SettingsViewTest, SaysWithinSightThatNoAnswerCame) {
    open();
    // The key's field is the last thing that shows.
    const QWidget& edit = button(QStringLiteral("Edit"));
    panel->resize(880, edit.mapTo(panel.get(), QPoint(0, edit.height())).y() + 4);
    settle();
    click(QStringLiteral("Edit"));
    type(field(QStringLiteral("Insert API Key")), QStringLiteral("k"));
    click(QStringLiteral("Confirm"));
    answer(std::nullopt);
    for (QLabel* const label : panel->findChildren<QLabel*>())
        if (label->text().contains(QLatin1String("does not answer"))) {
            const int bottom = label->mapTo(panel.get(), QPoint(0, label->height())).y();
            EXPECT_TRUE(label->isVisible());
            EXPECT_LE(bottom, panel->height());
            return;
        }
    FAIL() << "no such line";
}

TEST_F(SettingsViewTest, NamesWhatTheMachineLacksFirst) {
    open();
    const auto all = texts();
    const auto place = [&](const std::string& text) { return std::ranges::find(all, text) - all.begin(); };
    EXPECT_THAT(all, Contains("One thing is missing; the rest goes on working without it."));
    EXPECT_LT(place("Web pages"), place("Status bar"));
    capabilities[1].have = true;
    panel->select(SettingsView::Page::timers);
    panel->select(SettingsView::Page::general);
    settle();
    EXPECT_THAT(texts(), Contains("Everything is here."));

    keychain.isLocked = true;
    open();
    EXPECT_FALSE(keyringCapability(*credentials).have);
    keychain.isLocked = false;
    open();
    keychain.failing = KeychainStatus::unavailable;
    EXPECT_TRUE(credentials->save());
    EXPECT_FALSE(keyringCapability(*credentials).have) << "the last change is lost with the program";
    EXPECT_EQ(plainCapability({CapabilityKind::posting, true, "XTEST"}).sentence, "works");
}

TEST(TimerSettingsPage, KeepsItsControlsWholeAndItsValuesFromTheWheel) {
    FakeDefaults defaults;
    TimerSettingsView view(defaults, [] {}, nullptr);
    view.resize(760, 430);
    view.show();
    for (int turn = 0; turn < 4; ++turn) QApplication::processEvents();
    int controls = 0;
    QWidget* slider = nullptr;
    for (QWidget* const each : view.findChildren<QWidget*>()) {
        if (dynamic_cast<GW2Slider*>(each)) slider = each;
        if (each != slider && !dynamic_cast<QAbstractButton*>(each)) continue;
        ++controls;
        EXPECT_GE(each->height(), each->sizeHint().height()) << each->accessibleName().toStdString();
    }
    EXPECT_EQ(controls, 10);
    ASSERT_TRUE(slider);
    QWheelEvent wheel(QPointF(5, 5), slider->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider, &wheel);
    EXPECT_EQ(defaults.writes(), 0);
}

TEST_F(SettingsViewTest, AddsFillsAndDeletesAccounts) {
    open();
    panel->select(SettingsView::Page::accounts);
    settle();
    EXPECT_THAT(sections(), ElementsAre("My accounts credentials", "Add new account"));
    const std::string hint =
        "Add your account credentials to autofill login data from here or from system top status bar!";
    EXPECT_THAT(texts(), Contains(hint));
    EXPECT_EQ(field(QStringLiteral("Password")).echoMode(), QLineEdit::Password);

    const auto add = [&](const char* name, const char* password) {
        type(field(QStringLiteral("Username")), QString::fromUtf8(name));
        type(field(QStringLiteral("Password")), QString::fromUtf8(password));
        click(QStringLiteral("Add account"));
        EXPECT_EQ(field(QStringLiteral("Username")).text(), QString());
        EXPECT_EQ(field(QStringLiteral("Password")).text(), QString());
    };
    add("a", "1");
    add("b", "2");
    add("<i>c</i>", "");
    add("a", "3");
    EXPECT_EQ(credentials->accounts(), (AccountsCredentials::Accounts{{"<i>c</i>", ""}, {"a", "3"}, {"b", "2"}}));
    EXPECT_THAT(texts(), Not(Contains(hint)));
    for (int row = 0; row < 3; ++row) click(QStringLiteral("Fill credentials"), row);
    EXPECT_THAT(filled, ElementsAre("b", "a", "<i>c</i>"));
    click(QStringLiteral("Delete b"));
    EXPECT_THAT(texts(), Not(Contains("b")));
    EXPECT_THAT(keychain.calls.back(), R"(add {"<i>c</i>":"","a":"3"})");

    add(std::string(200, 'w').c_str(), "4");
    settle();
    for (const auto* button : panel->findChildren<QAbstractButton*>()) {
        if (!button->isVisible()) continue;
        EXPECT_LE(button->mapTo(panel.get(), QPoint(button->width(), 0)).x(), panel->width());
    }
    credentials->remove(std::string(200, 'w'));

    // What the keyring tells late is shown too.
    credentials->remove("a");
    credentials->remove("<i>c</i>");
    EXPECT_TRUE(credentials->save());
    keychain.items.begin()->second = R"({"late":"x"})";
    keychain.holdBack = true;
    open();
    panel->select(SettingsView::Page::accounts);
    EXPECT_THAT(texts(), Contains(hint));
    keychain.answerAll();
    settle();
    EXPECT_THAT(texts(), Contains("late"));
    EXPECT_THAT(printed, IsEmpty());
}

}  // namespace
}  // namespace vantor

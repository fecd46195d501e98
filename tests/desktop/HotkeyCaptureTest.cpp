// The capture of a hotkey with the real monitor: real keys of a real X server, in a window that takes the keyboard as
// the capture popup does.

#include "input/HotkeyCapture.h"

#include <gtest/gtest.h>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <cstdlib>
#include <functional>
#include <vector>

#include "ComesTrue.h"
#include "Player.h"
#include "app/HotkeyDispatcher.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/RawKeyMonitors.h"
#include "platform/linux/keys/XTestKeyPoster.h"

namespace vantor {
namespace {

class KeyCounter : public QWidget {
public:
    int pressed = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++pressed; }
};

class HotkeyCaptureTest : public testing::Test {
protected:
    void SetUp() override {
        player.letGo();
        player.takeFocus();
        popup.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
        popup.setGeometry(300, 300, 200, 100);
        overlay.prepare(popup.winId(), WindowNature::popup);
    }
    void TearDown() override { player.letGo(); }

    bool open() {
        popup.show();
        return comesTrue([this] { return popup.isActiveWindow(); });
    }
    // What it is after the key: every tap ends with a release that the local monitors see.
    std::string captured(std::uint8_t xKeycode) {
        const int before = releases;
        player.tap(xKeycode);
        EXPECT_TRUE(comesTrue([&] { return releases > before; })) << "key " << int(xKeycode) << " is not seen";
        return capture.newEvent();
    }
    std::string captured(KeyCode code) { return captured(*xKeycodeOf(code)); }

    Player& player = sharedPlayer();
    XcbOverlayWindows overlay{XcbDesktop::connect()};
    XConnection connection;
    PostedKeyRecord record;
    RawKeyMonitors monitors{connection, record};
    FakeDefaults defaults;
    KeyCounter popup;
    int releases = 0;
    std::vector<HotkeyAction> decisions;
    Subscription dispatcher = monitors.addLocalMonitor(maskOf(KeyEventType::keyUp), [this](const KeyEvent& event) {
        ++releases;
        decisions.push_back(decideHotkey(event, true, [] { return true; }, defaults).action);
        return KeyMonitors::Passing::passOn;
    });
    HotkeyCapture capture{defaults, settings::windowToggleEvent, monitors, [this] { return popup.isActiveWindow(); },
                          [] {}};
};

TEST_F(HotkeyCaptureTest, EveryKindOfKeyIsNamedAndNoneReachesTheWindow) {
    // A key of the game is no capture, however long the popup waits.
    player.tap(xkey::a);
    ASSERT_TRUE(open());
    EXPECT_EQ(capture.newEvent(), " ");

    EXPECT_EQ(captured(xkey::a), "A");
    EXPECT_EQ(captured(KeyCode{122}), "F1");
    EXPECT_EQ(captured(KeyCode{36}), "↩︎");
    EXPECT_EQ(captured(KeyCode{76}), "numpad ↩︎");
    EXPECT_EQ(captured(KeyCode{87}), "numpad 5");
    EXPECT_EQ(captured(KeyCode{53}), "ESC");
    EXPECT_EQ(captured(KeyCode{49}), "␣");
    EXPECT_EQ(captured(KeyCode{48}), "\t");
    player.press(xkey::shiftLeft, true);
    EXPECT_EQ(captured(KeyCode{124}), "⇧ + →");
    player.press(xkey::superLeft, true);
    player.press(xkey::controlLeft, true);
    EXPECT_EQ(captured(xkey::a), "⌘ + ⌃ + ⇧ + A");
    EXPECT_EQ(popup.pressed, 3) << "only the modifiers, which are no key-down";
}

TEST_F(HotkeyCaptureTest, ModifiersAloneAndOwnPostsCaptureNothing) {
    ASSERT_TRUE(open());
    for (const auto each : {xkey::shiftLeft, xkey::controlLeft, xkey::superLeft, xkey::altLeft}) {
        player.tap(each);
        // The next key shows that this one is through.
        EXPECT_EQ(captured(xkey::v), "V");
    }
    const XkbKeyboardLayout layout(connection);
    XTestKeyPoster poster(connection, record, layout);
    for (const bool down : {true, false}) ASSERT_EQ(poster.post({0, 0, down}), PostVerdict::posted);
    ASSERT_TRUE(comesTrue([&] { return popup.pressed == 5; })) << "the post does not arrive";
    EXPECT_EQ(capture.newEvent(), "V");
}

TEST_F(HotkeyCaptureTest, ADeadKeyIsCapturedAndDoesNotComposeWithTheNext) {
    ASSERT_EQ(std::system("setxkbmap de"), 0);
    ASSERT_TRUE(open());
    EXPECT_EQ(captured(xkey::v), "V");
    const std::uint8_t deadCircumflex = 49;
    EXPECT_EQ(captured(deadCircumflex), "V") << "it has no name";
    EXPECT_EQ(captured(xkey::a), "A");
    ASSERT_EQ(std::system("setxkbmap us"), 0);
}

TEST_F(HotkeyCaptureTest, TheStoredToggleIsCapturedAndStillTogglesWhenItGoesUp) {
    defaults.put(settings::windowToggleEvent, std::string("V"));
    ASSERT_TRUE(open());
    EXPECT_EQ(captured(xkey::v), "V");
    EXPECT_EQ(captured(xkey::a), "A");
    EXPECT_EQ(decisions, (std::vector{HotkeyAction::toggle, HotkeyAction::none}));
    capture.accept();
    EXPECT_EQ(captured(xkey::a), "A");
    EXPECT_EQ(decisions.back(), HotkeyAction::toggle) << "a new hotkey counts at once";
}

}  // namespace
}  // namespace vantor

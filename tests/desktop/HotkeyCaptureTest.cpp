// The capture of a hotkey with the real monitor: real keys of a real X server, in a window that takes the keyboard as
// the capture popup does.

#include "input/HotkeyCapture.h"

#include <gtest/gtest.h>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QWidget>
#include <cstdlib>
#include <vector>

#include "ComesTrue.h"
#include "Player.h"
#include "Typist.h"
#include "app/HotkeyDispatcher.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/RawKeyMonitors.h"

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
        // A key of the game is no capture, however long the popup waits.
        player.tap(xkey::a);
        popup.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
        popup.setGeometry(300, 300, 200, 100);
        overlay.prepare(popup.winId(), WindowNature::popup);
        popup.show();
        ASSERT_TRUE(comesTrue([this] { return popup.isActiveWindow(); }));
    }
    void TearDown() override { player.letGo(); }

    // What it is after the key: every tap ends with a release that the local monitors see.
    std::string captured(std::uint8_t xKeycode) {
        const std::size_t before = decisions.size();
        player.tap(xKeycode);
        EXPECT_TRUE(comesTrue([&] { return decisions.size() > before; })) << "key " << +xKeycode << " is not seen";
        return capture.newEvent();
    }
    std::string captured(KeyCode code) { return captured(*xKeycodeOf(code)); }

    Player& player = sharedPlayer();
    Typist typist;
    XcbOverlayWindows overlay{XcbDesktop::connect()};
    RawKeyMonitors monitors{typist.connection, typist.record};
    FakeDefaults defaults;
    KeyCounter popup;
    std::vector<HotkeyAction> decisions;  // at each release
    Subscription dispatcher = monitors.addLocalMonitor(maskOf(KeyEventType::keyUp), [this](const KeyEvent& event) {
        decisions.push_back(decideHotkey(event, true, [] { return true; }, defaults).action);
        return KeyMonitors::Passing::passOn;
    });
    HotkeyCapture capture{defaults, settings::windowToggleEvent, monitors, [this] { return popup.isActiveWindow(); },
                          [] {}};
};

TEST_F(HotkeyCaptureTest, EveryKindOfKeyIsNamedAndNoneReachesTheWindow) {
    EXPECT_EQ(capture.newEvent(), " ");
    // The hotkey that is stored goes on doing its work, which is at the release.
    defaults.put(settings::windowToggleEvent, std::string("V"));
    EXPECT_EQ(captured(xkey::v), "V");
    EXPECT_EQ(captured(xkey::a), "A");
    EXPECT_EQ(decisions, (std::vector{HotkeyAction::toggle, HotkeyAction::none}));
    capture.accept();
    EXPECT_EQ(captured(xkey::a), "A");
    EXPECT_EQ(decisions.back(), HotkeyAction::toggle) << "a new hotkey counts at once";
    EXPECT_EQ(captured(KeyCode{122}), "F1");
    EXPECT_EQ(captured(KeyCode{76}), "numpad ↩︎");
    EXPECT_EQ(captured(KeyCode{87}), "numpad 5");
    EXPECT_EQ(captured(KeyCode{53}), "ESC");
    EXPECT_EQ(captured(KeyCode{48}), "\t");
    // A modifier alone captures nothing; the next key shows that it is through.
    for (const auto each : {xkey::shiftLeft, xkey::controlLeft, xkey::superLeft, xkey::altLeft}) {
        player.tap(each);
        EXPECT_EQ(captured(xkey::v), "V");
    }
    player.press(xkey::shiftLeft, true);
    EXPECT_EQ(captured(KeyCode{124}), "⇧ + →");
    player.press(xkey::superLeft, true);
    player.press(xkey::controlLeft, true);
    EXPECT_EQ(captured(xkey::a), "⌘ + ⌃ + ⇧ + A");
    EXPECT_EQ(popup.pressed, 7) << "only the modifiers, which are no key-down";
    player.letGo();
    for (const bool down : {true, false}) typist.post({{0, 0, down}});
    EXPECT_TRUE(comesTrue([&] { return popup.pressed == 8; })) << "the post does not arrive";
    EXPECT_EQ(capture.newEvent(), "⌘ + ⌃ + ⇧ + A") << "nor does what Vantor posts";
}

TEST_F(HotkeyCaptureTest, ADeadKeyIsCapturedAndDoesNotComposeWithTheNext) {
    ASSERT_EQ(std::system("setxkbmap de"), 0);
    EXPECT_EQ(captured(xkey::v), "V");
    const std::uint8_t deadCircumflex = 49;
    EXPECT_EQ(captured(deadCircumflex), "V") << "it has no name";
    EXPECT_EQ(captured(xkey::a), "A");
    ASSERT_EQ(std::system("setxkbmap us"), 0);
}

}  // namespace
}  // namespace vantor

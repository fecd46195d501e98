// Where the keyboard goes while somebody types, and whether what is posted arrives at all: a real X server and window
// manager, the stand-in game and another application.

#include <gtest/gtest.h>
#include <unistd.h>
#include <xcb/xtest.h>

#include "Desktop.h"
#include "Player.h"
#include "platform/linux/XWayland.h"
#include "platform/linux/desktop/XcbTypingFocus.h"
#include "platform/linux/keys/PostingTrial.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

class TypingFocusTest : public testing::Test {
protected:
    bool isActive(const StandInGame& game) {
        return server_->activeWindow() == game.window() &&
               server_->clientWindow(server_->focusedWindow()) == game.window();
    }
    void focus(xcb_window_t window) {
        xcb_set_input_focus(server_->connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        (void)server_->focusedWindow();
    }

    std::unique_ptr<XcbDesktop> server_ = XcbDesktop::connect();
    XcbTypingFocus focus_{XcbDesktop::connect(), static_cast<std::uint32_t>(::getpid())};
};

TEST_F(TypingFocusTest, IsKeptInsideTheWindowAndEndsWithItOrWithTheKeyboardTaken) {
    StandInGame notes(
        {QStringLiteral("--class"), QStringLiteral("notes"), QStringLiteral("--size"), QStringLiteral("300x200")});
    StandInGame game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game); }));
    ASSERT_TRUE(focus_.awaitOther(250ms));
    EXPECT_TRUE(focus_.isKept());

    // As toolkits do it, and games that put an input line over their picture.
    const xcb_window_t inner = xcb_generate_id(server_->connection());
    xcb_create_window(server_->connection(), XCB_COPY_FROM_PARENT, inner, game.window(), 0, 0, 5, 5, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(server_->connection(), inner);
    focus(inner);
    EXPECT_TRUE(focus_.isKept());
    focus(notes.window());
    EXPECT_FALSE(focus_.isKept());
    focus(game.window());
    EXPECT_TRUE(focus_.isKept());

    const auto grab = [&] {
        const auto asked = xcb_grab_keyboard(server_->connection(), 0, server_->root(), XCB_CURRENT_TIME,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        return owned(xcb_grab_keyboard_reply(server_->connection(), asked, nullptr))->status == XCB_GRAB_STATUS_SUCCESS;
    };
    ASSERT_TRUE(grab());
    EXPECT_FALSE(focus_.isKept()) << "a menu would get what is typed";
    EXPECT_FALSE(focus_.awaitOther(20ms)) << "a locked screen would get it";
    xcb_ungrab_keyboard(server_->connection(), XCB_CURRENT_TIME);
    (void)server_->focusedWindow();
    EXPECT_TRUE(focus_.awaitOther(250ms));
    game.end();
    EXPECT_FALSE(focus_.isKept());
}

TEST_F(TypingFocusTest, IsAskedAgainAfterTheServerHasEndedTheConnection) {
    StandInGame game({});
    ASSERT_TRUE(comesTrue([&] { return isActive(game); }));
    auto desktop = XcbDesktop::connect();
    const auto window = xcb_generate_id(desktop->connection());
    xcb_create_pixmap(desktop->connection(), 1, window, desktop->root(), 1, 1);
    (void)desktop->focusedWindow();
    XcbTypingFocus focus(std::move(desktop), 1);
    ASSERT_TRUE(focus.awaitOther(250ms));
    xcb_kill_client(server_->connection(), window);
    (void)server_->focusedWindow();
    EXPECT_FALSE(focus.isKept());
    EXPECT_TRUE(focus.awaitOther(250ms));
    EXPECT_TRUE(focus.isKept());
}

// The desktop that asks first, and loses what is posted meanwhile.
TEST(PostingTrial, SeesWhetherAKeyArrivesOnlyWhereItDoes) {
    const XConnection server;
    const std::uint8_t key = meaninglessKey(coreKeymap(server));
    int swallowed = 1;
    const auto tap = [&](std::uint8_t xKeycode) {
        if (swallowed-- > 0) return;
        sharedPlayer().tap(xKeycode);
    };
    sharedPlayer().takeFocus();
    (void)sharedPlayer().typedText();
    EXPECT_FALSE(keyArrives(key, tap));
    EXPECT_TRUE(keyArrives(key, tap));
    EXPECT_EQ(sharedPlayer().typedText(), "") << "the key means something";
    EXPECT_EQ(xwaylandVersion(server), std::nullopt);
    EXPECT_EQ(serverVersionText(12401006), "24.1.6");
}

}  // namespace
}  // namespace vantor

// Typing while the others are slow or gone: a game that stops reading, a window manager that does not answer, a game
// that dies in the middle of a text, a very long text. Real X server, real window manager, the stand-in game as the
// receiver.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "StandInGame.h"
#include "WindowManager.h"
#include "base/AtOnce.h"
#include "fake/FakeKeyMonitors.h"
#include "input/ClipboardManager.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/desktop/XcbTypingFocus.h"
#include "platform/linux/desktop/XcbWorkspace.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "platform/qt/SystemClock.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

// The stand-in game, and what it says that it was given.
class Game {
public:
    explicit Game(const QString& windowClass = QStringLiteral("gw2-64.exe"))
        : program_({QStringLiteral("--record"), folder_.filePath(QStringLiteral("record")), QStringLiteral("--class"),
                    windowClass, QStringLiteral("--size"), QStringLiteral("300x200")}),
          record_(folder_.filePath(QStringLiteral("record"))) {
        EXPECT_TRUE(record_.open(QIODevice::ReadOnly));
    }

    [[nodiscard]] xcb_window_t window() const { return program_.window(); }
    void signal(int number) { program_.signal(number); }
    void kill() { program_.end(); }
    // Everything so far, repeats included: a key that stays down would show.
    const std::string& text() {
        for (;;) {
            const auto line = record_.readLine();
            pending_ += line;
            if (!pending_.endsWith('\n')) return text_;
            const auto entry = QJsonDocument::fromJson(pending_).object();
            pending_.clear();
            if (entry.value(QStringLiteral("down")).toBool())
                text_ += entry.value(QStringLiteral("text")).toString().toStdString();
        }
    }

private:
    QTemporaryDir folder_;
    StandInGame program_;
    QFile record_;
    QByteArray pending_;
    std::string text_;
};

// Lets a test act between two keys.
class Pacing final : public Pause {
public:
    explicit Pacing(bool real) : real_(real) {}
    void wait(std::chrono::microseconds duration) override {
        if (count++ == 0) firstPost = Steady::now();
        if (real_) system_.wait(duration);
        if (act) act(count);
    }

    std::function<void(int)> act;
    int count = 0;
    Steady::time_point firstPost;

private:
    bool real_;
    SystemPause system_;
};

class LoadTest : public testing::Test {
protected:
    bool isActive(xcb_window_t window) {
        return server_->activeWindow() == window && server_->clientWindow(server_->focusedWindow()) == window;
    }
    std::unique_ptr<QLineEdit> focusedPopup() {
        auto popup = std::make_unique<QLineEdit>();
        popup->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        popup->setGeometry(500, 300, 200, 60);
        overlays_.prepare(popup->winId(), WindowNature::popup);
        popup->show();
        EXPECT_TRUE(comesTrue([&] { return isActive(static_cast<xcb_window_t>(popup->winId())); }));
        EXPECT_TRUE(comesTrue([&] { return popup->hasFocus(); }));
        return popup;
    }
    std::string type(const std::string& text, Pause& pause) {
        TaskQueueAtOnce here;
        MainThreadAtOnce after;
        std::string status;
        ClipboardManager({.typist = {layout_, poster_, focus_, pause},
                          .monitors = monitors_,
                          .workspace = workspace_,
                          .typingThread = here,
                          .mainThread = after})
            .typeString(text, [&](const Typed& typed) { status = statusOf(typed); });
        return status;
    }
    // Nothing down, nothing held, nothing locked.
    testing::AssertionResult keyboardIsAtRest() {
        const auto asked = xcb_query_keymap(connection_.get());
        const XReply<xcb_query_keymap_reply_t> reply(xcb_query_keymap_reply(connection_.get(), asked, nullptr));
        for (std::size_t at = 0; at < sizeof reply->keys; ++at)
            if (reply->keys[at] != 0) return testing::AssertionFailure() << "a key near " << at * 8 << " is down";
        const XkbState state = coreState(connection_, coreKeymap(connection_));
        const auto modifiers = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE);
        return modifiers == 0 ? testing::AssertionSuccess()
                              : testing::AssertionFailure() << "modifiers " << modifiers << " are on";
    }

    std::unique_ptr<XcbDesktop> server_ = XcbDesktop::connect();
    XConnection connection_;
    XkbKeyboardLayout layout_{connection_};
    PostedKeyRecord record_;
    XTestKeyPoster poster_{connection_, record_, layout_, {}};
    FakeKeyMonitors monitors_;
    XcbWorkspace workspace_{XcbDesktop::connect(), [](const std::string&) { return std::nullopt; },
                            static_cast<std::uint32_t>(::getpid())};
    XcbTypingFocus focus_{XcbDesktop::connect(), static_cast<std::uint32_t>(::getpid())};
    XcbOverlayWindows overlays_{XcbDesktop::connect()};
};

std::string longText(std::size_t length) {
    const std::string piece = "The Quick Brown Fox (17 + 4) jumps; \"Over\" the Lazy Dog: [&AgEAWgAA=]! ";
    std::string text;
    while (text.size() < length) text += piece;
    text.resize(length);
    return text;
}

TEST_F(LoadTest, AReceiverThatStopsReadingForASecondHasEverything) {
    Game game;
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    const std::string text = longText(150);
    std::optional<Steady::time_point> stopped;
    bool resumed = false;
    Pacing pause(true);
    pause.act = [&](int count) {
        if (count == 60) {
            game.signal(SIGSTOP);
            stopped = Steady::now();
        }
        if (stopped && !resumed && Steady::now() - *stopped > 1s) {
            game.signal(SIGCONT);
            resumed = true;
        }
    };
    EXPECT_EQ(type(text, pause), "typed in app");
    EXPECT_TRUE(resumed) << "the text ended before the second did";
    game.signal(SIGCONT);
    EXPECT_TRUE(comesTrue([&] { return game.text().size() >= text.size(); }));
    EXPECT_EQ(game.text(), text);
    EXPECT_TRUE(keyboardIsAtRest());
}

TEST_F(LoadTest, TenThousandCharactersArriveThoughTheReceiverReadsNoneBeforeTheEnd) {
    Game game;
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    const std::string text = longText(10000);
    game.signal(SIGSTOP);
    Pacing pause(false);
    EXPECT_EQ(type(text, pause), "typed in app");
    game.signal(SIGCONT);
    EXPECT_TRUE(comesTrue([&] { return game.text().size() >= text.size(); }));
    EXPECT_TRUE(game.text() == text) << game.text().size() << " characters";
    EXPECT_TRUE(keyboardIsAtRest());
}

TEST_F(LoadTest, WaitsForAWindowManagerThatIsSlowToGiveTheFocus) {
    Game game;
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    for (int round = 0; round < 5; ++round) {
        const auto popup = focusedPopup();
        const WindowManager manager;
        manager.halt();
        workspace_.hideAndUnhideWithoutActivation();
        EXPECT_FALSE(focus_.awaitOther(50ms)) << "the focus cannot have come back";
        manager.resume();
        EXPECT_TRUE(focus_.awaitOther(30s));
        const std::string before = game.text();
        Pacing pause(false);
        type("Now.", pause);
        EXPECT_TRUE(comesTrue([&] { return game.text().size() >= before.size() + 4; }));
        EXPECT_EQ(game.text(), before + "Now.") << round;
        EXPECT_EQ(popup->text(), QString());
    }
    EXPECT_TRUE(keyboardIsAtRest());
}

TEST_F(LoadTest, TypesNothingWhenTheFocusDoesNotComeBackInTime) {
    Game game;
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    const auto popup = focusedPopup();
    const WindowManager manager;
    manager.halt();
    Pacing pause(false);
    const auto begin = Steady::now();
    EXPECT_EQ(type("Here.", pause), "stopped");
    const auto waited = Steady::now() - begin;
    EXPECT_GE(waited, 250ms);
    EXPECT_LT(waited, 2s) << "it waits for a window manager that does not answer";
    manager.resume();
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    EXPECT_EQ(type("Now.", pause), "typed in app");
    EXPECT_TRUE(comesTrue([&] { return game.text() == "Now."; })) << game.text();
    EXPECT_EQ(popup->text(), QString());
    EXPECT_TRUE(keyboardIsAtRest());
}

TEST_F(LoadTest, LeavesNoKeyDownWhenTheGameDiesInTheMiddleOfAText) {
    const std::string text = longText(60);
    for (const int deathAt : {41, 42, 43, 44, 45, 46}) {
        Game notes(QStringLiteral("notes"));
        ASSERT_TRUE(comesTrue([&] { return isActive(notes.window()); }));
        Game game;
        ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
        Pacing pause(true);
        pause.act = [&](int count) {
            if (count == deathAt) game.kill();
        };
        EXPECT_EQ(type(text, pause), "stopped");
        ASSERT_TRUE(comesTrue([&] { return isActive(notes.window()); }));
        EXPECT_TRUE(keyboardIsAtRest()) << deathAt;
        EXPECT_TRUE(text.starts_with(game.text()));
        // And the next text is whole, with at most the stroke before it that was under way.
        Pacing quick(false);
        type("{Next}", quick);
        EXPECT_TRUE(comesTrue([&] { return notes.text().ends_with("{Next}"); })) << notes.text();
        EXPECT_LE(notes.text().size(), 7U) << notes.text();
    }
}

}  // namespace
}  // namespace vantor

// Typing while the others are slow or gone: a game that stops reading, a window manager that does not answer, a game
// that dies in the middle of a text. Real X server, real window manager, the stand-in game as the receiver.

#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QLineEdit>
#include <csignal>
#include <functional>
#include <string>

#include "Desktop.h"
#include "Player.h"
#include "Typist.h"
#include "WindowManager.h"
#include "fake/FakeKeyMonitors.h"
#include "input/ClipboardManager.h"
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
    // Waits for as much, and gives what came.
    std::string awaitText(std::size_t length) {
        EXPECT_TRUE(comesTrue([&] { return text().size() >= length; }));
        return text();
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

class LoadTest : public testing::Test, protected Desktop {
protected:
    void TearDown() override { EXPECT_TRUE(player_.isAtRest()); }
    std::unique_ptr<QLineEdit> focusedPopup() {
        auto popup = std::make_unique<QLineEdit>();
        popup->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        popup->setGeometry(500, 300, 200, 60);
        overlays.prepare(popup->winId(), WindowNature::popup);
        popup->show();
        EXPECT_TRUE(comesTrue([&] { return isActive(idOf(*popup)) && popup->hasFocus(); }));
        return popup;
    }
    void type(const std::string& text, Pause& pause) {
        EXPECT_EQ(ClipboardManager(typist_.layout, typist_.poster, monitors_, workspace, pause).typeString(text),
                  "typed in app");
    }

    Player& player_ = sharedPlayer();
    Typist typist_;
    FakeKeyMonitors monitors_;
    Pacing quick_{false};
};

std::string longText(std::size_t length) {
    const std::string piece = "The Quick Brown Fox (17 + 4) jumps; \"Over\" the Lazy Dog: [&AgEAWgAA=]! ";
    std::string text;
    while (text.size() < length) text += piece;
    text.resize(length);
    return text;
}

TEST_F(LoadTest, WaitsForASlowWindowManagerAndGameAndTypesAllTheSameWhenTheFocusDoesNotComeBack) {
    Game game;
    ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    const WindowManager manager;
    std::string expected;
    for (int round = 0; round < 5; ++round) {
        const auto popup = focusedPopup();
        manager.halt();
        workspace.hideAndUnhideWithoutActivation();
        EXPECT_FALSE(workspace.awaitFocusReturned(50ms)) << "the focus cannot have come back";
        manager.resume();
        EXPECT_TRUE(workspace.awaitFocusReturned(30s));
        type("Now.", quick_);
        expected += "Now.";
        EXPECT_EQ(game.awaitText(expected.size()), expected) << round;
        EXPECT_EQ(popup->text(), QString());
    }
    // Ten thousand characters for a game that reads none of them before the end.
    game.signal(SIGSTOP);
    type(longText(10000), quick_);
    game.signal(SIGCONT);
    expected += longText(10000);
    EXPECT_TRUE(game.awaitText(expected.size()) == expected) << game.text().size() << " characters";

    const auto popup = focusedPopup();
    manager.halt();
    Pacing pause(false);
    const auto begin = Steady::now();
    type("Here.", pause);
    EXPECT_GE(pause.firstPost - begin, 250ms);
    EXPECT_LT(pause.firstPost - begin, 30s) << "it waits for a window manager that does not answer";
    // Where the focus was: with our own window.
    EXPECT_TRUE(comesTrue([&] { return popup->text().size() >= 5; }));
    EXPECT_EQ(popup->text(), QStringLiteral("Here."));
    manager.resume();
    EXPECT_TRUE(comesTrue([&] { return isActive(game.window()); }));
    EXPECT_EQ(game.text(), expected);
}

TEST_F(LoadTest, LeavesNoKeyDownWhenTheGameDiesInTheMiddleOfAText) {
    const std::string text = longText(60);
    for (const int deathAt : {41, 42, 43}) {
        Game notes(QStringLiteral("notes"));
        ASSERT_TRUE(comesTrue([&] { return isActive(notes.window()); }));
        Game game;
        ASSERT_TRUE(comesTrue([&] { return isActive(game.window()); }));
        Pacing pause(true);
        pause.act = [&](int count) {
            if (count == deathAt) game.kill();
        };
        type(text, pause);
        EXPECT_GT(pause.count, 120) << "it gave up";
        ASSERT_TRUE(comesTrue([&] { return isActive(notes.window()); }));
        EXPECT_TRUE(player_.isAtRest()) << deathAt;
        EXPECT_TRUE(text.starts_with(game.text()));
        // And the next text is whole.
        type("{Next}", quick_);
        EXPECT_TRUE(comesTrue([&] { return notes.text().ends_with("{Next}"); })) << notes.text();
    }
}

}  // namespace
}  // namespace vantor

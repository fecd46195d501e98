// A typist process that is killed, or loses its connection, at any point of a text leaves nothing behind on a real X
// server: no key down, and Caps Lock and group the player's. VANTOR_KILLS names the number of kills of each kind.

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <thread>

#include "ComesTrue.h"
#include "Player.h"
#include "input/KeyStrokes.h"
#include "platform/linux/keys/KeyboardUndo.h"
#include "platform/linux/keys/XTestKeyPoster.h"

namespace vantor {
namespace {

constexpr const char* typedText = "Hello, World: 100% \"AzZy\" [&AgEAWgAA=]";

std::filesystem::path guardianProgram() {
    return guardianBeside(QCoreApplication::applicationDirPath().toStdString() + "/../src");
}

int killsAsked() {
    const char* asked = std::getenv("VANTOR_KILLS");
    return asked ? std::atoi(asked) : 40;
}

// Ends by itself: nobody else may end it, and no test may hang on it.
constexpr unsigned typistSecondsLimit = 30;

struct Hello {
    pid_t typist = 0;
    std::uint32_t resource = 0;  // one of the connection's
};

// What the typist does before the post with this number, and before the last of all.
using Act = std::function<void(std::size_t, std::size_t)>;

[[noreturn]] void typeInThisProcess(int hello, const std::filesystem::path& guardian, const Act& act,
                                    std::chrono::microseconds pause) {
    alarm(typistSecondsLimit);
    bool lost = false;
    {
        XConnection connection;
        PostedKeyRecord record;
        // The player's group is another one than that of the learned layout.
        const XkbKeyboardLayout layout(coreKeymap(connection), 0);
        XTestKeyPoster poster(connection, record, layout, guardian);
        const auto strokes = strokesOfText(KeyMap::learn(layout), typedText);
        const Hello greeting = {getpid(), xcb_generate_id(connection.get())};
        xcb_create_pixmap(connection.get(), 1, greeting.resource, connection.root(), 1, 1);
        if (write(hello, &greeting, sizeof greeting) != sizeof greeting) _exit(3);
        const auto typing = poster.beginTyping();
        for (std::size_t at = 0; at < strokes.size() && !lost; ++at) {
            act(at, strokes.size());
            lost = poster.post(strokes[at]) == PostVerdict::lost;
            if (pause.count() > 0) std::this_thread::sleep_for(pause);
        }
    }
    _exit(lost ? 4 : 0);
}

// A process that stands over a typist and ends when the typist and its guardian have ended, with the typist's status.
struct Typing {
    pid_t overseer = 0;
    Hello typist;
};

Typing startTyping(const std::filesystem::path& guardian, const Act& act, std::chrono::microseconds pause = {}) {
    std::array<int, 2> hello{};
    EXPECT_EQ(pipe(hello.data()), 0);
    Typing typing;
    typing.overseer = fork();
    if (typing.overseer == 0) {
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        const pid_t typist = fork();
        if (typist == 0) typeInThisProcess(hello[1], guardian, act, pause);
        int status = 0;
        int typistStatus = 0;
        for (pid_t ended = wait(&status); ended > 0; ended = wait(&status))
            if (ended == typist) typistStatus = status;
        _exit(WIFSIGNALED(typistStatus) ? 100 + WTERMSIG(typistStatus) : WEXITSTATUS(typistStatus));
    }
    close(hello[1]);
    EXPECT_EQ(read(hello[0], &typing.typist, sizeof typing.typist), static_cast<ssize_t>(sizeof typing.typist));
    close(hello[0]);
    return typing;
}

int endOf(const Typing& typing) {
    int status = 0;
    waitpid(typing.overseer, &status, 0);
    return WEXITSTATUS(status);
}

// Not the one that is posted for capitals.
constexpr std::uint8_t playersShift = xkey::shiftRight;

constexpr int killed = 100 + SIGKILL;
constexpr int lostItsConnection = 4;

class GuardianTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(std::filesystem::exists(guardianProgram()));
        ASSERT_EQ(std::system("setxkbmap -layout us,de"), 0);
        player.takeFocus();
        disturb();
    }
    void TearDown() override {
        player.letGo();
        EXPECT_EQ(std::system("setxkbmap -layout us"), 0);
    }
    // Caps Lock on, the other group, Shift held.
    void disturb() {
        player.letGo();
        player.lock(xmod::caps);
        player.lockGroup(1);
        player.press(playersShift, true);
    }
    // Whether the player has it all back; Shift, if held at all, as the player left it.
    testing::AssertionResult nothingIsLeft() {
        auto down = player.keysDown();
        down.reset(playersShift);
        player.press(playersShift, false);
        const auto state = player.state();
        if (down.none() && player.keysDown().none() && state == KeyboardState{0, 0, xmod::caps, 1, 1})
            return testing::AssertionSuccess();
        return testing::AssertionFailure()
               << down.count() << " keys down, held " << int{state.held} << ", latched " << int{state.latched}
               << ", locked " << int{state.locked} << ", group " << int{state.lockedGroup};
    }

    Player& player = sharedPlayer();
    std::mt19937 random{20240229};
};

TEST_F(GuardianTest, AKillAtAnyPointOfATextLeavesNothingBehind) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(endOf(startTyping(guardianProgram(), [](std::size_t, std::size_t) {})), 0);
    const auto whole = std::chrono::steady_clock::now() - start;
    ASSERT_TRUE(nothingIsLeft());
    const int kills = killsAsked();
    int cutShort = 0;
    for (int each = 0; each < kills; ++each) {
        disturb();
        int status = 0;
        if (each % 2 == 0) {
            // At a point of the text, one after the other, the first before anything was posted.
            const auto point = static_cast<std::size_t>(each / 2);
            status = endOf(startTyping(guardianProgram(), [point](std::size_t at, std::size_t count) {
                if (at == point % count) raise(SIGKILL);
            }));
            EXPECT_EQ(status, killed);
        } else {
            // At any moment, from before the guardian's start to after its end.
            const auto typing = startTyping(guardianProgram(), [](std::size_t, std::size_t) {});
            std::this_thread::sleep_for(whole * (random() % 1000) / 1000);
            kill(typing.typist.typist, SIGKILL);
            status = endOf(typing);
        }
        cutShort += status == killed;
        ASSERT_TRUE(nothingIsLeft()) << "after kill " << each;
    }
    EXPECT_GE(cutShort, kills / 2);
    std::printf("%d kills, %d of them before the end of the text\n", kills, cutShort);
}

TEST_F(GuardianTest, UndoesOnlyAfterTheServerHasReadTheLastOfADeadClient) {
    auto dying = std::make_unique<XConnection>();
    const XConnection undoing;
    PendingKeyboardCleanup pending;
    pending.setSentinel(xcb_generate_id(dying->get()));
    pending.note(xkey::a);
    xcb_create_window(dying->get(), 0, pending.sentinel(), dying->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    KeyboardState state;
    ASSERT_TRUE(readKeyboard(*dying, state));
    auto undone = std::async(std::launch::async, [&] { return undoKeyboard(undoing.get(), pending); });
    EXPECT_EQ(undone.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    PostedKeyRecord record;
    PostedKeys(*dying, record).send(xkey::a, true);
    dying.reset((xcb_flush(dying->get()), nullptr));
    EXPECT_EQ(undone.get(), UndoVerdict::undone);
    EXPECT_TRUE(nothingIsLeft());
}

TEST_F(GuardianTest, ALatchThatWasDownWaitsForNoKey) {
    ASSERT_EQ(std::system("setxkbmap -layout de -variant T3"), 0);
    player.letGo();
    PendingKeyboardCleanup pending;
    {
        const XConnection dying;
        PostedKeyRecord record;
        PostedKeys keys(dying, record);
        keys.noteIn(&pending);
        // There it is one beside AltGr.
        keys.send(xkey::altRight, true);
        keys.send(xkey::shiftLeft, true);
        KeyboardState state;
        ASSERT_TRUE(readKeyboard(dying, state));
        ASSERT_EQ(state.held, 0xa0);
    }
    const XConnection undoing;
    EXPECT_EQ(undoKeyboard(undoing.get(), pending), UndoVerdict::undone);
    EXPECT_TRUE(player.keysDown().none());
    EXPECT_EQ(player.state(), KeyboardState());
}

TEST_F(GuardianTest, ALostConnectionIsNoticedAndLeavesNothingBehindWithAGuardianOrWithout) {
    for (int each = 0; each < killsAsked(); ++each) {
        disturb();
        const auto point = static_cast<std::size_t>(each);
        const auto guardian = each % 4 == 0 ? std::filesystem::path() : guardianProgram();
        std::array<int, 2> reached{};
        std::array<int, 2> goOn{};
        ASSERT_EQ(pipe(reached.data()) + pipe(goOn.data()), 0);
        const auto typing = startTyping(guardian, [&](std::size_t at, std::size_t count) {
            char byte = 0;
            if (at != point % (count - 1)) return;
            if (write(reached[1], &byte, 1) != 1 || read(goOn[0], &byte, 1) != 1) _exit(5);
        });
        char byte = 0;
        ASSERT_EQ(read(reached[0], &byte, 1), 1);
        player.killClientOf(typing.typist.resource);
        ASSERT_EQ(write(goOn[1], &byte, 1), 1);
        EXPECT_EQ(endOf(typing), lostItsConnection);
        for (const int end : {reached[0], reached[1], goOn[0], goOn[1]}) close(end);
        ASSERT_TRUE(nothingIsLeft()) << "after loss " << each;
    }
}

std::size_t openDescriptors(pid_t process) {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& each :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd"))
        ++count;
    return count;
}

// The processes of this name below a parent.
pid_t childNamed(pid_t parent, const std::string& name) {
    for (const auto& each : std::filesystem::directory_iterator("/proc")) {
        std::ifstream stat(each.path() / "stat");
        std::string id, command, state;
        pid_t above = 0;
        if (stat >> id >> command >> state >> above && above == parent && command == "(" + name + ")" && state != "Z")
            return std::atoi(id.c_str());
    }
    return 0;
}

TEST_F(GuardianTest, StandsApartStartsAgainAndIsMissedByNobody) {
    XConnection connection;
    PostedKeyRecord record;
    const XkbKeyboardLayout layout(coreKeymap(connection), 0);
    const auto map = KeyMap::learn(layout);
    const auto type = [&](XTestKeyPoster& poster, const std::function<void()>& halfway) {
        disturb();
        (void)player.typedText();
        {
            const auto typing = poster.beginTyping();
            for (const auto& each : strokesOfText(map, "Half ")) ASSERT_EQ(poster.post(each), PostVerdict::posted);
            halfway();
            for (const auto& each : strokesOfText(map, "Way.")) ASSERT_EQ(poster.post(each), PostVerdict::posted);
        }
        KeyboardState state;
        ASSERT_TRUE(readKeyboard(connection, state));
        EXPECT_EQ(player.typedText(), "Half Way.");
        EXPECT_TRUE(nothingIsLeft());
    };
    const auto guardian = [] { return childNamed(getpid(), "vantor-guardian"); };
    pid_t second = 0;
    {
        XTestKeyPoster poster(connection, record, layout, guardianProgram());
        EXPECT_EQ(guardian(), 0) << "nothing is started before something is typed";
        pid_t first = 0;
        type(poster, [&] {
            ASSERT_TRUE(comesTrue([&] { return (first = guardian()) != 0; }));
            EXPECT_EQ(getsid(first), first);
            EXPECT_EQ(openDescriptors(first), 4U);
            for (const int each : {SIGTERM, SIGINT, SIGHUP}) kill(first, each);
        });
        type(poster, [&] {
            EXPECT_EQ(guardian(), first) << "one guardian for all texts, and no signal ends it";
            kill(first, SIGKILL);
            ASSERT_TRUE(comesTrue([&] { return guardian() == 0; }));
        });
        type(poster, [&] { ASSERT_TRUE(comesTrue([&] { return (second = guardian()) != 0; })); });
        EXPECT_NE(second, first);
    }
    EXPECT_EQ(kill(second, 0), -1) << "it goes with the poster, and leaves no dead child";
    XTestKeyPoster alone(connection, record, layout, "/nonexistent/vantor-guardian");
    type(alone, [&] { EXPECT_EQ(guardian(), 0); });
}

}  // namespace
}  // namespace vantor

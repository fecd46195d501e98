// A typist process that is killed at any point of a text leaves nothing behind on a real X server: no key down, and
// Caps Lock and group the player's.

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

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
#include "Typist.h"
#include "platform/linux/keys/KeyboardUndo.h"

namespace vantor {
namespace {

constexpr const char* typedText = "Hello, World: 100% \"AzZy\" [&AgEAWgAA=]";
constexpr int kills = 40;

// Ends by itself: nobody else may end it, and no test may hang on it.
constexpr unsigned typistSecondsLimit = 120;

// What the typist does before the post with this number, of so many.
using Act = std::function<void(std::size_t, std::size_t)>;

[[noreturn]] void typeInThisProcess(const Act& act) {
    alarm(typistSecondsLimit);
    {
        XConnection connection;
        PostedKeyRecord record;
        // The player's group is another one than that of the learned layout.
        const XkbKeyboardLayout layout(coreKeymap(connection), 0);
        XTestKeyPoster poster(connection, record, layout, guardianProgram());
        const auto strokes = strokesOfText(KeyMap::learn(layout), typedText);
        const auto typing = poster.beginTyping();
        for (std::size_t at = 0; at < strokes.size(); ++at) {
            act(at, strokes.size());
            static_cast<void>(poster.post(strokes[at]));
        }
    }
    _exit(0);
}

pid_t startTyping(const Act& act) {
    const pid_t typist = fork();
    if (typist == 0) typeInThisProcess(act);
    return typist;
}

// The typist's status, once its guardian has ended too, which is ours by then.
int endOf(pid_t typist) {
    int status = 0;
    waitpid(typist, &status, 0);
    while (wait(nullptr) > 0) {
    }
    return WIFSIGNALED(status) ? 100 + WTERMSIG(status) : WEXITSTATUS(status);
}

// Not the one that is posted for capitals.
constexpr std::uint8_t playersShift = xkey::shiftRight;

constexpr int killed = 100 + SIGKILL;

class GuardianTest : public testing::Test {
protected:
    void SetUp() override {
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        ASSERT_TRUE(std::filesystem::exists(guardianProgram()));
        ASSERT_EQ(std::system("setxkbmap -layout us,de"), 0);
        player.takeFocus();
        disturb();
    }
    void TearDown() override {
        prctl(PR_SET_CHILD_SUBREAPER, 0);
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
    void expectNothingIsLeft() {
        player.press(playersShift, false);
        EXPECT_EQ(player.condition(), "held 0 latched 0 locked 2 group 1 keys");
    }

    Player& player = sharedPlayer();
    std::mt19937 random{20240229};
};

TEST_F(GuardianTest, AKillAtAnyPointOfATextLeavesNothingBehind) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(endOf(startTyping([](std::size_t, std::size_t) {})), 0);
    const auto whole = std::chrono::steady_clock::now() - start;
    expectNothingIsLeft();
    int cutShort = 0;
    for (int each = 0; each < kills; ++each) {
        disturb();
        int status = 0;
        if (each % 2 == 0) {
            // At a point of the text, one after the other, the first before anything was posted.
            const auto point = static_cast<std::size_t>(each / 2);
            status = endOf(startTyping([point](std::size_t at, std::size_t count) {
                if (at == point % count) raise(SIGKILL);
            }));
            EXPECT_EQ(status, killed);
        } else {
            // At any moment, from before the guardian's start to after its end.
            const pid_t typist = startTyping([](std::size_t, std::size_t) {});
            std::this_thread::sleep_for(whole * (random() % 1000) / 1000);
            kill(typist, SIGKILL);
            status = endOf(typist);
        }
        cutShort += status == killed;
        SCOPED_TRACE(each);
        expectNothingIsLeft();
    }
    EXPECT_GE(cutShort, kills / 2);
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
    expectNothingIsLeft();
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
    EXPECT_TRUE(player.isAtRest());
}

auto openDescriptors(pid_t process) {
    const std::filesystem::directory_iterator folder("/proc/" + std::to_string(process) + "/fd");
    return std::distance(begin(folder), end(folder));
}

bool isBlocked(pid_t process, int signal) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    std::uint64_t blocked = 0;
    for (std::string name; status >> name;)
        if (name == "SigBlk:") status >> std::hex >> blocked;
    return (blocked >> (signal - 1) & 1) != 0;
}

// The guardian of this process; 0 where none lives.
pid_t guardian() {
    for (const auto& each : std::filesystem::directory_iterator("/proc")) {
        std::ifstream stat(each.path() / "stat");
        std::string id, command, state;
        pid_t parent = 0;
        if (stat >> id >> command >> state >> parent && parent == getpid() && command == "(vantor-guardian)" &&
            state != "Z")
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
        expectNothingIsLeft();
    };
    pid_t second = 0;
    {
        XTestKeyPoster poster(connection, record, layout, guardianProgram());
        EXPECT_EQ(guardian(), 0) << "nothing is started before something is typed";
        pid_t first = 0;
        type(poster, [&] {
            ASSERT_TRUE(comesTrue([&] { return (first = guardian()) != 0; }));
            EXPECT_EQ(getsid(first), first);
            EXPECT_TRUE(comesTrue([&] { return openDescriptors(first) == 4; })) << "it has one of ours";
            for (const int each : {SIGTERM, SIGINT, SIGHUP}) {
                EXPECT_TRUE(isBlocked(first, each)) << "before it could ignore it, it would end it";
                kill(first, each);
            }
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

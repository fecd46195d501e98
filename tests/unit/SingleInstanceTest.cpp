// One Vantor a display: who comes first, what the second one asks of it, and what a killed one leaves.

#include "platform/qt/SingleInstance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <thread>

namespace vantor {
namespace {

class SingleInstanceTest : public testing::Test {
protected:
    SingleInstanceTest() {
        before = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
    }
    ~SingleInstanceTest() override { qputenv("XDG_RUNTIME_DIR", before); }
    // From another thread, as another process would, while the first one's loop runs.
    template <typename Ask>
    static auto meanwhile(const Ask& ask) {
        decltype(ask()) answer{};
        std::atomic<bool> done = false;
        std::jthread other([&] {
            answer = ask();
            done = true;
        });
        while (!done) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        return answer;
    }

    QTemporaryDir folder;
    QByteArray before;
    const QString name = SingleInstance::nameFor(":7.0");
    int opened = 0;
    SingleInstance first{[this] { ++opened; }};
};

TEST_F(SingleInstanceTest, TheFirstTakesTheSocketOfAKilledOneAndAnswersTheOthers) {
    const QByteArray path = folder.filePath(name).toLocal8Bit();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    const int killed = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(killed, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(killed);
    const mode_t mask = umask(0);
    ASSERT_EQ(first.claim(name), SingleInstance::Role::first);
    umask(mask);
    // Nobody else's: it types logins.
    const auto ofOthers =
        QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;
    EXPECT_FALSE(QFileInfo(folder.filePath(name)).permissions() & ofOthers);

    SingleInstance second([] { FAIL(); });
    EXPECT_EQ(meanwhile([&] { return second.claim(name); }), SingleInstance::Role::second);
    while (opened == 0) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);

    std::string order;
    first.answerWith([&](const std::string& line) {
        order += "asked ";
        return SingleInstance::Answer{.line = "heard " + line, .afterwards = [&] { order += "afterwards "; }};
    });
    EXPECT_EQ(meanwhile([&] { return SingleInstance::request(name, "quit"); }).line, "heard quit");
    EXPECT_EQ(order, "asked afterwards ");
    // What never ends a line is not kept.
    const auto tooLong = meanwhile([&] { return SingleInstance::request(name, std::string(1 << 20, 'x')); });
    EXPECT_EQ(tooLong.line, std::nullopt);
    EXPECT_EQ(SingleInstance::request(QStringLiteral("nobody.socket"), "quit").running, false);
    for (const char* display : {":7", ":7.0"}) EXPECT_EQ(SingleInstance::nameFor(display), name);
    EXPECT_NE(SingleInstance::nameFor("host:7"), name);
}

}  // namespace
}  // namespace vantor

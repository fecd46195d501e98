// The settings file: types, rights, damage, failing disks, other processes, notices.
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QLockFile>
#include <QtCore/QTemporaryDir>
#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <limits>
#include <thread>

#include "fake/FakeMainThread.h"
#include "platform/qt/JsonDefaults.h"
#include "platform/qt/QtMainThread.h"

namespace vantor {

namespace {

using Texts = std::vector<std::string>;
using testing::ElementsAre;
using testing::Optional;
using Verdict = Defaults::Verdict;

struct File {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("vantor/settings.json"));

    void write(const QByteArray& bytes) const {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    [[nodiscard]] QByteArray bytes(const QString& suffix = {}) const {
        QFile file(path + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("absent");
    }
    [[nodiscard]] Texts names() const {
        Texts names;
        for (const QString& name : QFileInfo(path).dir().entryList(QDir::Files | QDir::Hidden))
            names.push_back(name.toStdString());
        return names;
    }
};

unsigned modeOf(const QString& path) {
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777U : 0;
}

// Runs the call and gives its verdict and the lines on standard error.
template <typename Call>
std::pair<Verdict, std::string> withLines(const Call& call) {
    testing::internal::CaptureStderr();
    const Verdict verdict = call();
    return {verdict, testing::internal::GetCapturedStderr()};
}

MATCHER(IsOneLineWithoutTheSecret, "") {
    return arg.size() > 1 && arg.find('\n') == arg.size() - 1 && arg.find("SECRET") == std::string::npos;
}

}  // namespace

TEST(JsonDefaults, AValueHasTheTypeItWasStoredWith) {
    const File file;
    JsonDefaults defaults(file.path, nullptr);
    EXPECT_EQ(defaults.value("some.key"), std::nullopt);
    for (const SettingValue& value :
         {SettingValue(true), SettingValue(false), SettingValue(0.0), SettingValue(-2.5), SettingValue(std::string()),
          SettingValue(std::string("⌘ + \"\\\n")), SettingValue(Texts{}), SettingValue(Texts{"a", ""})}) {
        EXPECT_EQ(defaults.setValue("some.key", value), Verdict::stored);
        EXPECT_THAT(defaults.value("some.key"), Optional(value));
        EXPECT_THAT(JsonDefaults(file.path, nullptr).value("some.key"), Optional(value));
    }
    EXPECT_EQ(defaults.removeValue("some.key"), Verdict::stored);
    EXPECT_EQ(defaults.value("some.key"), std::nullopt);

    file.write(R"({"number": 1, "null": null, "object": {}, "mixed": ["a", 1], "text": "x"})");
    EXPECT_EQ(defaults.get<bool>("number"), std::nullopt);
    EXPECT_EQ(defaults.get<double>("number"), 1.0);
    for (const char* key : {"null", "object", "mixed", "absent"}) EXPECT_EQ(defaults.value(key), std::nullopt) << key;
}

TEST(JsonDefaults, AWriteChangesOneKeyOfAFileOfTheUsersOwn) {
    const mode_t mask = umask(0);
    const File file;
    JsonDefaults defaults(file.path, nullptr);
    EXPECT_EQ(defaults.setValue("a", true), Verdict::stored);
    EXPECT_EQ(modeOf(QFileInfo(file.path).path()), 0700U);
    EXPECT_EQ(modeOf(file.path), 0600U);

    file.write(R"({"of another": {"version": [1, null]}, "a": true})");
    chmod(QFile::encodeName(file.path).constData(), 0644);
    EXPECT_EQ(defaults.setValue("b", 2.0), Verdict::stored);
    EXPECT_EQ(modeOf(file.path), 0600U);
    EXPECT_EQ(QJsonDocument::fromJson(file.bytes()),
              QJsonDocument::fromJson(R"({"of another": {"version": [1, null]}, "a": true, "b": 2})"));
    EXPECT_THAT(file.names(), ElementsAre("settings.json"));
    umask(mask);
}

TEST(JsonDefaults, ADamagedFileIsSetAsideByTheFirstWriteOnly) {
    for (const QByteArray& damage :
         {QByteArray("{\"api.key\": \"SECRET"), QByteArray("[1]"), QByteArray("{} x"), QByteArray("\0\0\0", 3)}) {
        const File file;
        file.write(damage);
        JsonDefaults defaults(file.path, nullptr);
        EXPECT_EQ(defaults.value("api.key"), std::nullopt);
        EXPECT_EQ(file.bytes(), damage);
        EXPECT_THAT(file.names(), ElementsAre("settings.json"));

        const auto first = withLines([&] { return defaults.setValue("a", true); });
        EXPECT_EQ(first.first, Verdict::stored);
        EXPECT_THAT(first.second, IsOneLineWithoutTheSecret());
        EXPECT_EQ(file.bytes(QStringLiteral(".damaged")), damage);
        EXPECT_EQ(defaults.get<bool>("a"), true);

        file.write(damage + "2");
        EXPECT_THAT(withLines([&] { return defaults.setValue("b", true); }).second, IsOneLineWithoutTheSecret());
        EXPECT_EQ(file.bytes(QStringLiteral(".damaged")), damage);
        EXPECT_EQ(file.bytes(QStringLiteral(".damaged.2")), damage + "2");
        EXPECT_EQ(withLines([&] { return defaults.setValue("c", true); }).second, "");
    }
}

TEST(JsonDefaults, AWriteThatCannotBeDoneSaysSoAndLeavesTheFile) {
    const std::string secret = "SECRET" + std::string(4000, 'x');
    const auto write = [&](const QString& path) {
        JsonDefaults defaults(path, nullptr, std::chrono::milliseconds(20));
        return withLines([&] { return defaults.setValue("api.key", secret); });
    };
    const auto expectRefused = [](const std::pair<Verdict, std::string>& result, const char* why) {
        EXPECT_EQ(result.first, Verdict::failed) << why;
        EXPECT_THAT(result.second, IsOneLineWithoutTheSecret()) << why;
        EXPECT_THAT(result.second, testing::HasSubstr(why));
    };
    const QByteArray before = R"({"a": true})";
    const File file;
    file.write(before);

    QLockFile lock(file.path + QStringLiteral(".lock"));
    ASSERT_TRUE(lock.tryLock());
    expectRefused(write(file.path), "locked");
    lock.unlock();
    EXPECT_EQ(file.bytes(), before);

    // The lock still fits, the settings do not.
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit tight = {1000, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    const auto full = write(file.path);
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, oldHandler);
    expectRefused(full, "the disk refused");
    EXPECT_EQ(file.bytes(), before);
    EXPECT_THAT(file.names(), ElementsAre("settings.json"));

    expectRefused(write(file.path + QStringLiteral("/below/a/file.json")), "folder");
    const QString folder = file.folder.filePath(QStringLiteral("folder.json"));
    ASSERT_TRUE(QDir().mkpath(folder));
    expectRefused(write(folder), "cannot be read");
    EXPECT_TRUE(QFileInfo(folder).isDir());

    JsonDefaults defaults(file.path, nullptr);
    EXPECT_EQ(withLines([&] { return defaults.setValue("a", std::numeric_limits<double>::infinity()); }).first,
              Verdict::failed);
    EXPECT_EQ(file.bytes(), before);
}

TEST(JsonDefaults, TwoProcessesAndManyThreadsLoseNothing) {
    constexpr int count = 15;
    const File file;
    const auto writeAll = [&](JsonDefaults& defaults, const std::string& prefix) {
        bool stored = true;
        for (int i = 0; i < count; ++i)
            stored = defaults.setValue(prefix + std::to_string(i), static_cast<double>(i)) == Verdict::stored && stored;
        return stored;
    };
    const pid_t child = fork();
    if (child == 0) {
        JsonDefaults defaults(file.path, nullptr);
        _exit(writeAll(defaults, "child.") ? 0 : 1);
    }
    JsonDefaults one(file.path, nullptr);
    JsonDefaults other(file.path, nullptr);
    std::array<bool, 3> stored{};
    {
        std::jthread first([&] { stored[0] = writeAll(one, "first."); });
        std::jthread second([&] { stored[1] = writeAll(one, "second."); });
        std::jthread third([&] { stored[2] = writeAll(other, "third."); });
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(stored, testing::Each(true));
    for (const char* prefix : {"child.", "first.", "second.", "third."})
        for (int i = 0; i < count; ++i) EXPECT_EQ(one.get<double>(prefix + std::to_string(i)), i) << prefix << i;
}

// A moment later the same inode, length and time may stand for another text; the time lies ahead so that a slow run is
// no older.
TEST(JsonDefaults, AReaderSeesAChangeThatLooksLikeNone) {
    const File file;
    const auto moment = std::filesystem::file_time_type::clock::now() + std::chrono::minutes(1);
    const JsonDefaults reader(file.path, nullptr);
    for (const char* text : {"1", "2", "3"}) {
        file.write(QByteArray("{\"a\": \"") + text + "\"}");
        std::filesystem::last_write_time(file.path.toStdString(), moment);
        EXPECT_EQ(reader.get<std::string>("a"), text);
    }
}

TEST(JsonDefaults, ObserversHearOfEachKeyOnTheMainThread) {
    const File file;
    FakeMainThread mainThread;
    JsonDefaults defaults(file.path, &mainThread);
    EXPECT_EQ(defaults.setValue("before", true), Verdict::stored);
    Texts heard;
    Subscription ended;
    const auto first = defaults.observe([&](const std::string& key) {
        heard.push_back("first " + key);
        ended.reset();
    });
    ended = defaults.observe([&](const std::string& key) { heard.push_back("ended " + key); });
    EXPECT_EQ(defaults.setValue("a", true), Verdict::stored);
    EXPECT_EQ(defaults.setValue("before", true), Verdict::stored);  // as it was
    EXPECT_TRUE(heard.empty());
    mainThread.runAll();
    EXPECT_THAT(heard, ElementsAre("first a"));
    EXPECT_EQ(defaults.removeValue("a"), Verdict::stored);
    mainThread.runAll();
    EXPECT_THAT(heard, ElementsAre("first a", "first a"));
}

TEST(JsonDefaults, ObserversHearOfAnotherProgram) {
    const File file;
    QtMainThread mainThread;
    JsonDefaults defaults(file.path, &mainThread);
    Texts heard;
    const auto subscription = defaults.observe(
        [&](const std::string& key) { heard.push_back(key + " " + defaults.get<std::string>(key).value_or("unset")); });
    const auto hear = [&](std::size_t count) {
        while (heard.size() < count) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    EXPECT_EQ(defaults.setValue("api.key", std::string("own")), Verdict::stored);
    EXPECT_TRUE(heard.empty()) << "told within the call";
    hear(1);
    JsonDefaults theirs(file.path, nullptr);
    EXPECT_EQ(theirs.setValue("api.key", std::string("theirs")), Verdict::stored);
    hear(2);
    EXPECT_THAT(heard, ElementsAre("api.key own", "api.key theirs"));
}

}  // namespace vantor

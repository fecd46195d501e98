// A password that is planted in the accounts and then looked for everywhere but in the keyring: settings, everything in
// the user's folders, output and the toolkit's log, arguments, environment, core files. Runs in
// demo/private_desktop.sh, whose folders are made for it.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <csignal>
#include <cstring>

#include "StandInStatusBar.h"
#include "accounts/AccountsCredentials.h"
#include "app/StatusMenu.h"
#include "data/SettingKeys.h"
#include "platform/linux/services/CoreFiles.h"
#include "platform/linux/services/SecretServiceKeychain.h"
#include "platform/linux/services/TrayStatusItem.h"
#include "platform/qt/JsonDefaults.h"
#include "platform/qt/QtMainThread.h"

namespace vantor {
namespace {

using namespace std::chrono_literals;

// Put together at run time: the program's own file must not hold it.
std::string canary() {
    std::string word = "yranac";
    std::reverse(word.begin(), word.end());
    return word + "-" + std::to_string(getpid()) + "-" + std::string(3, 'Q') + std::string(3, 'Z');
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The files below a folder that hold a text. A store that cannot be read at all would hold nothing: count them too.
QStringList filesWith(const QString& folder, const QByteArray& text, int& looked) {
    QStringList found;
    for (QDirIterator each(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); each.hasNext();) {
        const QByteArray content = contentOf(each.next());
        looked += !content.isEmpty();
        if (content.contains(text)) found.append(each.filePath());
    }
    return found;
}

QByteArray logged;

// Leaves no account in the keyring that the other tests use.
void forget() {
    QtMainThread mainThread;
    SecretServiceKeychain keychain(mainThread);
    keychain.replace(AccountsCredentials::keychainItem(), "{}", [](KeychainStatus) {});
    EXPECT_TRUE(keychain.finish(10s));
}

TEST(KeyringCanary, ThePasswordIsWrittenNowhereElse) {
    const QByteArray secret = QByteArray::fromStdString(canary());
    qunsetenv("SECRET_SERVICE_BUS_NAME");
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=true"));
    const auto before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { logged += text.toUtf8() + '\n'; });
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::string printed;
    {
        QtMainThread mainThread;
        SecretServiceKeychain keychain(mainThread);
        AccountsCredentials credentials(keychain, [&](const std::string& line) { printed += line; });
        JsonDefaults defaults(JsonDefaults::defaultPath(), &mainThread);
        const StandInStatusBar bar;
        TrayStatusItem statusItem;
        const StatusMenu menu(statusItem, credentials, [] { return ToggleEntry{"Quiet"}; },
                              {[] {}, [](const auto&) {}, [] {}});
        credentials.set("canary's account", secret.toStdString());
        EXPECT_TRUE(credentials.save());
        EXPECT_EQ(defaults.setValue(settings::apiKey, std::string("control")), Defaults::Verdict::stored);
        QElapsedTimer timer;
        timer.start();
        while (credentials.storage() == AccountsCredentials::Storage::reading && timer.elapsed() < 10000)
            QApplication::processEvents(QEventLoop::AllEvents, 5);
        EXPECT_TRUE(keychain.finish(10s));
        QApplication::processEvents();
        EXPECT_TRUE(credentials.stored());
        EXPECT_EQ(credentials.storage(), AccountsCredentials::Storage::known);
    }
    printed += testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules({});

    int looked = 0;
    for (const char* folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        ASSERT_FALSE(qgetenv(folder).isEmpty()) << folder;
        EXPECT_EQ(filesWith(qEnvironmentVariable(folder), secret, looked), QStringList()) << folder;
    }
    EXPECT_GE(looked, 2);  // the settings and the keyring's own, encrypted file
    int control = 0;
    EXPECT_EQ(filesWith(qEnvironmentVariable("XDG_CONFIG_HOME"), "control", control).size(), 1);
    EXPECT_FALSE(QByteArray::fromStdString(printed).contains(secret));
    EXPECT_FALSE(logged.contains(secret));
    for (const char* own : {"/proc/self/cmdline", "/proc/self/environ"}) {
        const QByteArray content = contentOf(QString::fromLatin1(own));
        EXPECT_FALSE(content.isEmpty()) << own;
        EXPECT_FALSE(content.contains(secret)) << own;
    }
    forget();
}

// A process that holds the password and crashes in a folder of its own; the files that hold it afterwards.
QStringList leftBehind(bool refuse, const QByteArray& secret) {
    QTemporaryDir folder;
    const pid_t child = fork();
    if (child == 0) {
        const rlimit all{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_CORE, &all);
        if (refuse && !refuseCoreFiles()) _exit(2);
        if (chdir(folder.path().toLocal8Bit().constData()) != 0) _exit(3);
        signal(SIGABRT, SIG_DFL);
        abort();
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
    int looked = 0;
    return filesWith(folder.path(), secret, looked);
}

TEST(KeyringCanary, ACrashWritesNoCoreFile) {
    const QByteArray secret = QByteArray::fromStdString(canary());
    EXPECT_EQ(leftBehind(true, secret), QStringList());
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    const QByteArray pattern = contentOf(QStringLiteral("/proc/sys/kernel/core_pattern")).trimmed();
    // The check can fail: where the system writes cores into the folder, one without the refusal holds the password.
    if (limit.rlim_max != RLIM_INFINITY || pattern.isEmpty() || pattern.startsWith('|') || pattern.startsWith('/'))
        GTEST_SKIP() << "this system writes no core into the working folder (" << pattern.toStdString()
                     << "), so the control cannot be made; without it, the refusal left nothing behind";
    EXPECT_EQ(leftBehind(false, secret).size(), 1);
}

}  // namespace
}  // namespace vantor

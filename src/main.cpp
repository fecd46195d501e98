// Picks the backend, wires it to the application, and runs. The only source file that knows which system this is.

#include <unistd.h>

#include <QApplication>
#include <QFile>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <optional>
#include <variant>

#include "Build.h"
#include "app/AppDelegate.h"
#include "app/cli/CommandLine.h"
#include "app/cli/SettingsCommand.h"
#include "app/cli/TimelineCommand.h"
#include "app/view/ViewWindows.h"
#include "browser/LazyWebPage.h"
#include "data/SessionQueue.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/Doctor.h"
#include "platform/linux/RawKeyMonitors.h"
#include "platform/linux/XTestKeyPoster.h"
#include "platform/linux/XcbOverlayWindows.h"
#include "platform/linux/XcbWorkspace.h"
#include "platform/linux/XkbKeyboardLayout.h"
#include "platform/qt/JsonDefaults.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/QtPasteboard.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtStatusItem.h"
#include "platform/qt/QtUrlSession.h"
#include "platform/qt/SingleInstance.h"
#include "platform/qt/SystemClock.h"
#include "timers/DataFault.h"
#include "ui/Fonts.h"

namespace vantor {

namespace {

constexpr int unavailableStatus = 1;

void printLine(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

int complain(const char* line) {
    std::fprintf(stderr, "vantor: %s\n", line);
    return unavailableStatus;
}

QString settingsPath(const Surroundings& surroundings) {
    return surroundings.settingsFile ? QString::fromStdString(*surroundings.settingsFile) : JsonDefaults::defaultPath();
}

std::string embeddedCatalogue() {
    QFile file(QStringLiteral(":/catalogue/events.json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

std::string textOrStandardInput(const std::optional<std::string>& text) {
    return text ? *text : std::string(std::istreambuf_iterator<char>(std::cin), {});
}

// The keyboard of the X server, from the layout to the monitors.
struct Keyboard {
    XConnection connection;
    XkbKeyboardLayout layout{connection};
    PostedKeyRecord posted;
    XTestKeyPoster poster{connection, posted};
    RawKeyMonitors monitors{connection, posted};
};

struct Desktop {
    explicit Desktop(std::unique_ptr<XcbDesktop> connection)
        : workspace(
              std::move(connection), [this](const std::string& name) { return entries.find(name); },
              static_cast<std::uint32_t>(getpid())) {}

    DesktopEntries entries{DesktopEntries::standardFolders()};
    XcbWorkspace workspace;
};

constexpr const char* noDisplay = "no X display: set DISPLAY, or run a desktop session with X11 or XWayland";

int printKeyMap() {
    const XConnection connection;
    if (!connection.get()) return complain(noDisplay);
    const XkbKeyboardLayout layout(connection);
    if (!layout.available()) return complain("the X server has no XKB extension, so the keyboard layout is not known");
    std::cout << keyMapJson(KeyMap::learn(layout)) << "\n";
    return 0;
}

// Types or presses once, into the application that has the focus.
template <typename Operation>
int actOnFocusedApplication(const Operation& operation) {
    auto connection = XcbDesktop::connect();
    if (!connection) return complain(noDisplay);
    Keyboard keyboard;
    if (!keyboard.connection.hasTest()) return complain("the X server has no XTEST extension, so nothing can be typed");
    Desktop desktop(std::move(connection));
    SystemPause pause;
    ClipboardManager clipboardManager(keyboard.layout, keyboard.poster, keyboard.monitors, desktop.workspace, pause);
    operation(clipboardManager);
    return 0;
}

int runDoctor() {
    std::cout << powersAsText(examinePowers(
        std::filesystem::path(QCoreApplication::applicationDirPath().toStdString()) / "libvantor_web.so"));
    return 0;
}

int start(int& argumentCount, char** arguments, const Surroundings& surroundings) {
    auto workspaceConnection = XcbDesktop::connect();
    auto windowsConnection = XcbDesktop::connect();
    if (!workspaceConnection || !windowsConnection) return complain(noDisplay);

    // The overlay needs what only X11 gives: its place, its layer, and keys beside the focused application.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication::setDesktopFileName(QString::fromLatin1(ownIdentifier));
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argumentCount, arguments);

    AppDelegate* delegate = nullptr;
    SingleInstance instance([&delegate] {
        if (delegate) delegate->appObserver().openOverlay();
    });
    if (instance.claim(SingleInstance::nameFor(qgetenv("DISPLAY"))) == SingleInstance::Role::second) return 0;

    if (registerFonts() == FontsVerdict::fallback)
        complain("the embedded typefaces cannot be read; the system's stand in");

    QtMainThread mainThread;
    JsonDefaults defaults(settingsPath(surroundings), &mainThread);
    SessionQueue queue;
    QtUrlSession session(queue);
    const SystemClock clock;
    SystemPause pause;
    Keyboard keyboard;
    Desktop desktop(std::move(workspaceConnection));
    XcbOverlayWindows overlayWindows(std::move(windowsConnection));
    [[maybe_unused]] const Subscription owner = desktop.workspace.observeFrontmostWindow(
        [&overlayWindows](NativeWindow window) { overlayWindows.setOwnerWindow(window); });
    QtStatusItem statusItem;
    QtPasteboard pasteboard;
    const QtScreens screens;
    ViewWindows windows(overlayWindows, screens);

    AppDelegate appDelegate(
        {.data = {.defaults = defaults,
                  .session = session,
                  .queue = queue,
                  .mainThread = mainThread,
                  .clock = clock,
                  .hosts = {.api = surroundings.apiHost.value_or(build::apiHost),
                            .staticFiles = surroundings.staticFiles.value_or(build::staticFiles)},
                  .printLine = printLine,
                  .stop = stopForDataFault},
         .keyMonitors = keyboard.monitors,
         .keyPoster = keyboard.poster,
         .keyboardLayout = keyboard.layout,
         .workspace = desktop.workspace,
         .statusItem = statusItem,
         .pasteboard = pasteboard,
         .pause = pause,
         .makeWebPage = [] { return std::make_unique<LazyWebPage>([] { return std::unique_ptr<WebEngine>(); }); },
         .styleSheet = [] { return std::nullopt; },
         .makeWindow = [&windows](AppWindowName name, AppObserver& observer) { return windows.make(name, observer); }},
        [] { _exit(0); });
    delegate = &appDelegate;
    // Nothing is saved at the end, and the session queue may still be at work on what would be torn down here.
    _exit(QApplication::exec());
}

// What needs no windows. Nothing: the program is to start.
std::optional<int> runCommand(const CommandLine& line) {
    const SystemClock clock;
    const auto defaults = [&] { return JsonDefaults(settingsPath(line.surroundings), nullptr); };
    const auto run = [&](const auto& command) -> std::optional<int> {
        using Command = std::decay_t<decltype(command)>;
        if constexpr (std::is_same_v<Command, ShowHelp>) {
            std::cout << helpText();
            return 0;
        } else if constexpr (std::is_same_v<Command, ShowVersion>) {
            std::cout << "vantor " << build::version << "\n";
            return 0;
        } else if constexpr (std::is_same_v<Command, RunDoctor>) {
            return runDoctor();
        } else if constexpr (std::is_same_v<Command, PrintTimeline>) {
            return runTimeline(command, embeddedCatalogue(), defaults(), clock, std::cout, std::cerr);
        } else if constexpr (std::is_same_v<Command, PrintKeyMap>) {
            return printKeyMap();
        } else if constexpr (std::is_same_v<Command, TypeText>) {
            const std::string text = textOrStandardInput(command.text);
            return actOnFocusedApplication([&](ClipboardManager& keys) { keys.typeString(text); });
        } else if constexpr (std::is_same_v<Command, PressText>) {
            const std::string text = textOrStandardInput(command.text);
            return actOnFocusedApplication([&](ClipboardManager& keys) { keys.pressReadableKeys(text); });
        } else if constexpr (std::is_same_v<Command, ChangeSettings>) {
            JsonDefaults store(settingsPath(line.surroundings), nullptr);
            return runChangeSettings(command, store, std::cin, std::cerr);
        } else if constexpr (std::is_same_v<Command, PrintSetting>) {
            return runPrintSetting(command, defaults(), std::cout, std::cerr);
        } else {
            return std::nullopt;
        }
    };
    return std::visit(run, line.command);
}

int runMain(int count, char** arguments) {
    const std::vector<std::string> given(arguments + 1, arguments + count);
    const auto parsed = parseCommandLine(given, environmentVariable);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        std::cerr << error->line << "\n";
        return usageStatus;
    }
    const auto& line = std::get<CommandLine>(parsed);
    if (!std::holds_alternative<StartProgram>(line.command)) {
        QCoreApplication application(count, arguments);
        if (const auto status = runCommand(line)) {
            std::cout.flush();
            return *status;
        }
    }
    return start(count, arguments, line.surroundings);
}

}  // namespace

}  // namespace vantor

int main(int count, char** arguments) { return vantor::runMain(count, arguments); }

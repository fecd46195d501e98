// Picks the backend, wires it to the application, and runs. The only source file that knows which system this is.

#include <unistd.h>

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QStandardPaths>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <optional>
#include <variant>

#include "Build.h"
#include "app/AppDelegate.h"
#include "app/cli/CommandLine.h"
#include "app/cli/RemoteCommand.h"
#include "app/cli/SettingsCommand.h"
#include "app/cli/TimelineCommand.h"
#include "app/view/ViewWindows.h"
#include "browser/LazyWebPage.h"
#include "data/Decoder.h"
#include "data/SessionQueue.h"
#include "platform/linux/CoreFiles.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/Doctor.h"
#include "platform/linux/MotionWish.h"
#include "platform/linux/RawKeyMonitors.h"
#include "platform/linux/SecretServiceKeychain.h"
#include "platform/linux/XTestKeyPoster.h"
#include "platform/linux/XcbOverlayWindows.h"
#include "platform/linux/XcbWorkspace.h"
#include "platform/linux/XkbKeyboardLayout.h"
#include "platform/qt/JsonDefaults.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/QtPasteboard.h"
#include "platform/qt/QtScheduler.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtStatusItem.h"
#include "platform/qt/QtUrlSession.h"
#include "platform/qt/ScriptFonts.h"
#include "platform/qt/SingleInstance.h"
#include "platform/qt/SystemClock.h"
#include "platform/qt/WebEngineModule.h"
#include "timers/DataFault.h"
#include "ui/Fonts.h"
#include "ui/KitStyle.h"
#include "ui/Motion.h"

namespace vantor {

namespace {

constexpr int unavailableStatus = 1;
constexpr std::chrono::seconds lastWords{2};

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

std::optional<std::string> embedded(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll().toStdString()) : std::nullopt;
}

std::string textOrStandardInput(const std::optional<std::string>& text) {
    return text ? *text : std::string(std::istreambuf_iterator<char>(std::cin), {});
}

// The keyboard of the X server, from the layout to the monitors.
struct Keyboard {
    XConnection connection;
    XkbKeyboardLayout layout{connection};
    PostedKeyRecord posted;
    XTestKeyPoster poster{connection, posted, layout,
                          guardianBeside(QCoreApplication::applicationDirPath().toStdString())};
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

// The one embedded page, and the engine's widget for whoever shows it.
class Pages {
public:
    [[nodiscard]] std::unique_ptr<WebPage> make() {
        auto made = std::make_unique<LazyWebPage>([this] { return load(); });
        page_ = made.get();
        return made;
    }
    [[nodiscard]] WebView::Source source() {
        return {*page_, [this] { return engine_ ? engine_->widget() : nullptr; }, [this] { return trouble(); }};
    }

private:
    std::unique_ptr<WebEngine> load() {
        using Place = QStandardPaths::StandardLocation;
        const auto folder = [](Place place) {
            return QStandardPaths::writableLocation(place) + QStringLiteral("/vantor/pages");
        };
        auto loaded = loadWebEngine({folder(Place::GenericDataLocation), folder(Place::GenericCacheLocation)});
        engine_ = loaded.get();
        return loaded;
    }
    [[nodiscard]] QString trouble() const {
        if (page_->engine() == LazyWebPage::Engine::missing)
            return QStringLiteral("Pages need the web engine, which is not installed with Vantor.");
        if (page_->engine() == LazyWebPage::Engine::gone)
            return QStringLiteral("The page has stopped. Open another, or select the tab again.");
        return {};
    }

    LazyWebPage* page_ = nullptr;
    WidgetWebEngine* engine_ = nullptr;
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

std::vector<Power> powersHere() {
    return examinePowers({.webModule = webEngineModulePath().toStdString(),
                          .guardian = guardianBeside(QCoreApplication::applicationDirPath().toStdString())});
}

int runDoctor() {
    std::cout << powersAsText(powersHere());
    return 0;
}

// For the settings panel, which has the accounts at hand.
std::vector<SystemPower> systemPowers(const std::vector<Power>& found, const AccountsCredentials& credentials) {
    std::vector<SystemPower> powers;
    for (const Power& each : found)
        powers.push_back(each.name == "keyring" ? keyringPower(credentials)
                                                : plainPower(each.name, each.present, each.advice));
    return powers;
}

// A file that is not as it should be is a fault of the build, which the form then shows as an empty one.
SupportData embeddedSupportData() {
    const auto decoded = decodeJson<SupportData>(embedded(QStringLiteral(":/texts/support.json")).value_or("{}"));
    if (!decoded.value) std::fprintf(stderr, "vantor: texts/support.json: %s\n", decoded.error.c_str());
    return decoded.value.value_or(SupportData());
}

// Looked for when a player opens the translators: most never do.
TranslatorNeeds scriptFonts() {
    registerScriptFonts();
    return {[](const Script& script) {
                return hasFontFamily(
                    QString::fromUtf8(script.fontName.data(), static_cast<qsizetype>(script.fontName.size())));
            },
            scriptFontFolder()};
}

int askRunning(const AskRunning& command) {
    return runAskRunning(
        command,
        [](const std::string& line) {
            auto reply = SingleInstance::request(SingleInstance::nameFor(qgetenv("DISPLAY")), line);
            return RemoteReply{reply.running, std::move(reply.line)};
        },
        std::cerr);
}

int start(int& argumentCount, char** arguments, const Surroundings& surroundings) {
    // Passwords lie in this process's memory.
    if (!refuseCoreFiles())
        complain("a crash may leave a core file that holds passwords: the system refuses to forbid it");
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
    dressApplication();
    askMotionWish([](bool reduced) { setReducedMotion(reduced); });

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
    QtScheduler scheduler;
    SecretServiceKeychain keychain(mainThread);
    Pages pages;
    ViewWindows windows(
        {.overlayWindows = overlayWindows,
         .screens = screens,
         .scheduler = scheduler,
         .webHosts = {surroundings.wikiHost.value_or(build::wikiHost),
                      surroundings.videoHost.value_or(build::videoHost),
                      surroundings.searchHost.value_or(build::searchHost)},
         .accountSite = build::accountSite,
         .feedbackEndpoint = surroundings.feedbackHost.value_or(build::feedbackHost) + "/api/message",
         .supportData = embeddedSupportData(),
         .webPage = [&pages] { return pages.source(); },
         .translator = [] { return scriptFonts(); },
         .examineSystem =
             [&delegate, &keyboard] {
                 return systemPowers(keyboard.connection.isLost() ? withoutKeys(powersHere()) : powersHere(),
                                     delegate->appObserver().credentials());
             },
         .openLink =
             [](const std::string& address) { QDesktopServices::openUrl(QUrl(QString::fromStdString(address))); },
         .menuEntries = [&delegate] { return delegate->menuEntries(); }});

    const auto quit = [&keychain] {
        // What the player changed last may still be on its way to the keyring.
        (void)keychain.finish(lastWords);
        _exit(0);
    };
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
         .keychain = keychain,
         .makeWebPage = [&pages] { return pages.make(); },
         .styleSheet = [] { return embedded(QStringLiteral(":/pages/wiki.css")); },
         .makeWindow = [&windows](AppWindowName name, AppObserver& observer) { return windows.make(name, observer); }},
        quit);
    instance.answerWith([&appDelegate, quit](const std::string& line) {
        AppObserver& observer = appDelegate.appObserver();
        auto answer = answerRequest(
            line,
            {.toggleApp = [&observer] { observer.toggleApp(); },
             .isAccount =
                 [&observer](const std::string& name) { return observer.credentials().accounts().contains(name); },
             .fillCredentials = [&observer](const std::string& name) { observer.fillCredentials(name); },
             .quit = quit});
        return SingleInstance::Answer{std::move(answer.line), std::move(answer.afterwards)};
    });
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
            if (const std::string engine = webEngineVersion(); !engine.empty())
                std::cout << "web engine " << engine << "\n";
            return 0;
        } else if constexpr (std::is_same_v<Command, RunDoctor>) {
            return runDoctor();
        } else if constexpr (std::is_same_v<Command, PrintTimeline>) {
            return runTimeline(command, embedded(QStringLiteral(":/catalogue/events.json")).value_or(""), defaults(),
                               clock, std::cout, std::cerr);
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
        } else if constexpr (std::is_same_v<Command, AskRunning>) {
            AskRunning asked = command;
            if (asked.what == AskRunning::What::fill) asked.username = textOrStandardInput(asked.username);
            return askRunning(asked);
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

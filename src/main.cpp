// Wires the backend that the build has chosen to the application, and runs.

#include <unistd.h>

#include <QtCore/QFile>
#include <QtCore/QRandomGenerator>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QApplication>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <variant>

#include "Backend.h"
#include "Build.h"
#include "app/AppDelegate.h"
#include "app/cli/Commands.h"
#include "app/cli/RemoteCommand.h"
#include "app/view/ViewWindows.h"
#include "catalogue/UpdateKeys.h"
#include "data/Decoder.h"
#include "data/SessionQueue.h"
#include "platform/qt/QtDownload.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/QtScheduler.h"
#include "platform/qt/QtUrlSession.h"
#include "platform/qt/ScriptFonts.h"
#include "platform/qt/SingleInstance.h"
#include "platform/qt/SystemClock.h"
#include "platform/qt/UserFolders.h"
#include "timers/DataFault.h"
#include "ui/Blending.h"
#include "ui/Fonts.h"
#include "ui/KitStyle.h"
#include "ui/Motion.h"

namespace vantor {

namespace {

constexpr int unavailableStatus = 1;
constexpr std::chrono::seconds lastWords{2};
constexpr std::chrono::milliseconds lastStroke{500};

void printLine(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

int complain(const char* line) {
    std::fprintf(stderr, "vantor: %s\n", line);
    return unavailableStatus;
}

std::optional<std::string> embedded(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll().toStdString()) : std::nullopt;
}

// A file that is not as it should be is a fault of the build, which the form then shows as an empty one.
SupportData embeddedSupportData() {
    const auto decoded = decodeJson<SupportData>(embedded(QStringLiteral(":/texts/support.json")).value_or("{}"));
    if (!decoded.value) std::fprintf(stderr, "vantor: texts/support.json: %s\n", decoded.error.c_str());
    return decoded.value.value_or(SupportData());
}

// Looked for when a player opens the translators: most never do.
TranslatorNeeds scriptFonts() {
    backend::registerScriptFonts();
    return {[](const Script& script) {
                return hasFontFamily(
                    QString::fromUtf8(script.fontName.data(), static_cast<qsizetype>(script.fontName.size())));
            },
            scriptFontFolder()};
}

// download: nothing where nothing is to be fetched.
LayeredCatalogue::Needs catalogueLayers(const Overrides& overrides, Download* download) {
    // Of files that stand in for the embedded ones nothing is known.
    const auto facts = decodeJson<CatalogueFacts>(embedded(QStringLiteral(":/catalogue/version.json")).value_or("{}"));
    return {.playerFolder = playerCatalogueFolder().toStdString(),
            .updateFolder = catalogueUpdateFolder().toStdString(),
            .keys = believedKeys({build::catalogueKey, build::nextCatalogueKey}, build::believesTestKey),
            .builtIn = overrides.staticFiles ? CatalogueFacts() : facts.value.value_or(CatalogueFacts()),
            .embedded = [] { return embedded(QStringLiteral(":/catalogue/events.json")).value_or(""); },
            .host = overrides.catalogueHost.value_or(build::catalogueHost),
            .download = download,
            .random = [] { return QRandomGenerator::global()->generateDouble(); }};
}

QString instanceName() { return SingleInstance::nameFor(QByteArray::fromStdString(backend::desktopName())); }

std::optional<Refusal> act(const AskRunning& command, AppObserver& observer) {
    using What = AskRunning::What;
    using EmoteVerdict = AppObserver::EmoteVerdict;
    const std::string text = command.text.value_or("");
    switch (command.what) {
        case What::toggleApp:
            if (!observer.toggleApp()) return Refusal::vantorInFront;
            break;
        case What::fill:
            if (!observer.credentials().accounts().contains(text)) return Refusal::unknownName;
            observer.fillCredentials(text);
            break;
        case What::readCatalogue:
            observer.data().readCatalogue();
            break;
        case What::toggle:
            observer.toggleByKey();
            break;
        case What::hide:
            observer.closeByKey();
            break;
        case What::show:
            observer.openOverlay();
            break;
        case What::paste:
            if (!observer.pasteByKey()) return Refusal::notOverGame;
            break;
        case What::emote:
            switch (observer.useEmote(text)) {
                case EmoteVerdict::used:
                    break;
                case EmoteVerdict::unknown:
                    return Refusal::unknownName;
                case EmoteVerdict::notOverGame:
                    return Refusal::notOverGame;
            }
            break;
        case What::stop:
            observer.clipboardManager().stop();
            break;
        case What::quit:
            break;
    }
    return std::nullopt;
}

int start(int& argumentCount, char** arguments, const Overrides& overrides) {
    if (!backend::prepareToStart()) return unavailableStatus;
    QApplication::setDesktopFileName(QString::fromLatin1(build::desktopId));
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argumentCount, arguments);

    AppDelegate* delegate = nullptr;
    SingleInstance instance([&delegate] {
        if (delegate) delegate->appObserver().openOverlay();
    });
    if (instance.claim(instanceName()) == SingleInstance::Role::second) return 0;

    if (registerFonts() == FontsVerdict::fallback)
        complain("the embedded typefaces cannot be read; the system's stand in");
    styleApplication();

    QtMainThread mainThread;
    QtScheduler scheduler;
    const auto defaults = backend::makeDefaults(overrides.settingsFile, &mainThread);
    const auto clock = backend::makeClock();
    SessionQueue queue;
    QtUrlSession session(queue);
    QtDownload download(queue);
    SystemPause pause;
    const auto system = backend::makeBackend(mainThread, scheduler);
    if (!system) return unavailableStatus;
    system->followReducedMotion([](bool reduced) { setReducedMotion(reduced); });
    const TypingServices keys = system->typing();
    SessionQueue typingThread;
    system->followBlending([](bool blends) { setBlending(blends); });
    ViewWindows windows(
        {.overlayWindows = system->overlayWindows(),
         .screens = system->screens(),
         .scheduler = scheduler,
         .webHosts = {overrides.wikiHost.value_or(build::wikiHost), overrides.videoHost.value_or(build::videoHost),
                      overrides.searchHost.value_or(build::searchHost)},
         .accountSite = build::accountSite,
         .feedbackEndpoint = overrides.feedbackHost.value_or(build::feedbackHost) + "/api/message",
         .supportData = embeddedSupportData(),
         .webPage = [&system] { return system->pageSource(); },
         .translator = [] { return scriptFonts(); },
         .examineSystem =
             [&delegate, &system] {
                 AppObserver& observer = delegate->appObserver();
                 return systemCapabilities(system->capabilities(), observer.credentials(), observer.defaults(),
                                           [&system](CapabilityKind kind) { return system->ask(kind); });
             },
         .openLink =
             [](const std::string& address) { QDesktopServices::openUrl(QUrl(QString::fromStdString(address))); },
         .menuEntries = [&delegate] { return delegate->menuEntries(); },
         .pcKeyboards = backend::hasPcKeyboards()});

    const auto quit = [&system, &delegate] {
        if (delegate) (void)delegate->appObserver().clipboardManager().finish(lastStroke);
        // What the player changed last may still be on its way to the keyring.
        (void)system->keychain().finish(lastWords);
        _exit(0);
    };
    AppDelegate appDelegate(
        {.data = {.defaults = *defaults,
                  .session = session,
                  .queue = queue,
                  .mainThread = mainThread,
                  .clock = *clock,
                  .hosts = {.api = overrides.apiHost.value_or(build::apiHost),
                            .staticFiles = overrides.staticFiles.value_or(build::staticFiles)},
                  .printLine = printLine,
                  .stop = stopForDataFault,
                  .catalogue = catalogueLayers(overrides, &download)},
         .keyMonitors = keys.monitors,
         .keyPoster = keys.poster,
         .keyboardLayout = keys.layout,
         .workspace = keys.workspace,
         .statusItem = system->statusItem(),
         .pasteboard = system->pasteboard(),
         .pause = pause,
         .scheduler = scheduler,
         .keychain = system->keychain(),
         .typingFocus = keys.focus,
         .typingThread = typingThread,
         .makeWebPage = [&system] { return system->makeWebPage(); },
         .styleSheet = [] { return embedded(QStringLiteral(":/pages/wiki.css")); },
         .makeWindow = [&windows](AppWindowName name, AppObserver& observer) { return windows.make(name, observer); }},
        quit);
    instance.answerWith([&appDelegate, quit](const std::string& line) {
        auto answer = answerRequest(
            line, {.act = [&appDelegate](const AskRunning& command) { return act(command, appDelegate.appObserver()); },
                   .quit = quit});
        return SingleInstance::Answer{std::move(answer.line), std::move(answer.afterwards)};
    });
    delegate = &appDelegate;
    const int status = QApplication::exec();
    (void)system->keychain().finish(lastWords);
    // Nothing else is saved at the end, and the session queue may still be at work on what would be torn down here.
    _exit(status);
}

std::string versionText() {
    const std::string engine = backend::webEngineVersion();
    return std::string("vantor ") + build::version + "\n" + (engine.empty() ? "" : "web engine " + engine + "\n");
}

std::optional<int> runWithoutWindows(const CommandLine& line) {
    SystemPause pause;
    return runCommand(line.command,
                      {.makeDefaults = [&] { return backend::makeDefaults(line.overrides.settingsFile, nullptr); },
                       .makeClock = backend::makeClock,
                       .makeKeyboardLayout = backend::makeKeyboardLayout,
                       .makeTyping = backend::makeTypingBackend,
                       .examineCapabilities = backend::examineCapabilities,
                       .catalogue = [] { return embedded(QStringLiteral(":/catalogue/events.json")).value_or(""); },
                       .layers = catalogueLayers(line.overrides, nullptr),
                       .version = versionText,
                       .askRunning =
                           [](const std::string& request) {
                               auto reply = SingleInstance::request(instanceName(), request);
                               return RemoteReply{reply.running, std::move(reply.line)};
                           },
                       .pause = pause,
                       .in = std::cin,
                       .out = std::cout,
                       .err = std::cerr});
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
        if (const auto status = runWithoutWindows(line)) {
            std::cout.flush();
            return *status;
        }
    }
    return start(count, arguments, line.overrides);
}

}  // namespace

}  // namespace vantor

int main(int count, char** arguments) { return vantor::runMain(count, arguments); }

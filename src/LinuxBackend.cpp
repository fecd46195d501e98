// Linux with an X server: X11 for keys and windows, the session bus for the keyring, the toolkit for the rest.

#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QStandardPaths>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "Backend.h"
#include "browser/LazyWebPage.h"
#include "platform/linux/XAtoms.h"
#include "platform/linux/desktop/DesktopEntries.h"
#include "platform/linux/desktop/X11Screens.h"
#include "platform/linux/desktop/XcbOverlayWindows.h"
#include "platform/linux/desktop/XcbTypingFocus.h"
#include "platform/linux/desktop/XcbWorkspace.h"
#include "platform/linux/keys/RawKeyMonitors.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"
#include "platform/linux/services/CoreFiles.h"
#include "platform/linux/services/Doctor.h"
#include "platform/linux/services/PortalShortcuts.h"
#include "platform/linux/services/ReducedMotion.h"
#include "platform/linux/services/SecretServiceKeychain.h"
#include "platform/linux/services/TrayStatusItem.h"
#include "platform/qt/JsonDefaults.h"
#include "platform/qt/QtPasteboard.h"
#include "platform/qt/ScriptFonts.h"
#include "platform/qt/SystemClock.h"
#include "platform/qt/WebEngineModule.h"

namespace vantor::backend {

namespace {

constexpr const char* noDisplay = "no X display: set DISPLAY, or run a desktop session with X11 or XWayland";

std::nullptr_t complain(const char* line) {
    std::fprintf(stderr, "vantor: %s\n", line);
    return nullptr;
}

std::filesystem::path guardian() { return guardianBeside(QCoreApplication::applicationDirPath().toStdString()); }

std::vector<Capability> capabilitiesHere(std::string webModuleTrouble = {}, bool asksServices = false) {
    return vantor::examineCapabilities({.webModule = webEngineModulePath().toStdString(),
                                        .guardian = guardian(),
                                        .webModuleTrouble = std::move(webModuleTrouble),
                                        .asksServices = asksServices});
}

// The layout, with the connection that it is read from.
class ConnectedLayout final : public KeyboardLayout {
public:
    [[nodiscard]] const XConnection& connection() const { return connection_; }
    [[nodiscard]] const XkbKeyboardLayout& layout() const { return layout_; }
    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override {
        return layout_.translate(keyCode, flags);
    }
    [[nodiscard]] std::vector<std::unique_ptr<KeyboardLayout>> others() const override { return layout_.others(); }
    [[nodiscard]] ModifierFlags slowModifiers() const override { return layout_.slowModifiers(); }

private:
    XConnection connection_;
    XkbKeyboardLayout layout_{connection_};
};

// The keyboard of the X server, from the layout to the monitors. What types has a connection of its own, which is the
// typing thread's once something is typed; the record of what it has posted is the one thing between the two.
struct Keyboard {
    XConnection typing;
    XkbKeyboardLayout layout{typing};
    PostedKeyRecord posted;
    XTestKeyPoster poster{typing, posted, layout, guardian()};
    XConnection hearing;
    RawKeyMonitors monitors{hearing, posted};
};

// In a Wayland session the raw keys are those of X11's windows only: the desktop is asked to listen beside them.
class SessionKeyMonitors final : public KeyMonitors {
public:
    explicit SessionKeyMonitors(RawKeyMonitors& raw) : raw_(raw) {}

    Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) override {
        return raw_.addGlobalMonitor(mask, std::move(handler));
    }
    Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) override {
        return raw_.addLocalMonitor(mask, std::move(handler));
    }
    [[nodiscard]] Subscription withholdWithCommand(KeyCode keyCode) override {
        return raw_.withholdWithCommand(keyCode);
    }
    void offerToDesktop(const std::vector<DesktopShortcut>& shortcuts,
                        const std::function<void(const std::string& id)>& activated) override {
        if (isWaylandSession() && hasSessionBus()) portal_.emplace(shortcuts, activated);
    }

private:
    RawKeyMonitors& raw_;
    std::optional<PortalShortcuts> portal_;
};

struct Desktop {
    Desktop(std::unique_ptr<XcbDesktop> connection, std::unique_ptr<XcbDesktop> typing)
        : workspace(
              std::move(connection), [this](const std::string& name) { return entries.find(name); }, ownProcess),
          focus(std::move(typing), ownProcess) {}

    const std::uint32_t ownProcess = static_cast<std::uint32_t>(getpid());
    DesktopEntries entries{DesktopEntries::standardFolders()};
    XcbWorkspace workspace;
    XcbTypingFocus focus;
};

class X11Typing final : public TypingBackend {
public:
    X11Typing(std::unique_ptr<XcbDesktop> workspace, std::unique_ptr<XcbDesktop> typing)
        : desktop_(std::move(workspace), std::move(typing)) {}

    [[nodiscard]] bool canType() const { return keyboard_.typing.hasTest(); }
    [[nodiscard]] TypingServices typing() override {
        return {keyboard_.layout, keyboard_.poster, keyboard_.monitors, desktop_.workspace, desktop_.focus};
    }

private:
    Keyboard keyboard_;
    Desktop desktop_;
};

// The one embedded page, and the engine's widget for whoever shows it.
class Pages {
public:
    [[nodiscard]] std::unique_ptr<WebPage> make() {
        auto made = std::make_unique<LazyWebPage>([this] { return load(); });
        page_ = made.get();
        return made;
    }
    [[nodiscard]] PageSource source() {
        return {*page_, [this] { return engine_ ? engine_->widget() : nullptr; }};
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

    LazyWebPage* page_ = nullptr;
    WidgetWebEngine* engine_ = nullptr;
};

class X11Backend final : public Backend {
public:
    X11Backend(std::unique_ptr<XcbDesktop> workspace, std::unique_ptr<XcbDesktop> typing,
               std::unique_ptr<XcbDesktop> windows, std::unique_ptr<XcbDesktop> screens, MainThread& mainThread)
        : desktop_(std::move(workspace), std::move(typing)),
          overlayWindows_(std::move(windows)),
          screens_(std::move(screens)),
          frontmostWindow_(desktop_.workspace.observeFrontmostWindow([this](NativeWindow window) {
              overlayWindows_.setOwnerWindow(window);
              screens_.setFrontmostWindow(window);
          })),
          keychain_(mainThread) {}

    [[nodiscard]] TypingServices typing() override {
        return {keyboard_.layout, keyboard_.poster, monitors_, desktop_.workspace, desktop_.focus};
    }
    [[nodiscard]] OverlayWindows& overlayWindows() override { return overlayWindows_; }
    [[nodiscard]] Screens& screens() override { return screens_; }
    [[nodiscard]] StatusItem& statusItem() override { return statusItem_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    [[nodiscard]] Keychain& keychain() override { return keychain_; }
    [[nodiscard]] std::unique_ptr<WebPage> makeWebPage() override { return pages_.make(); }
    [[nodiscard]] PageSource pageSource() override { return pages_.source(); }
    [[nodiscard]] std::vector<Capability> capabilities() override {
        return keyboard_.hearing.isLost() ? withoutKeys(capabilitiesHere()) : capabilitiesHere();
    }
    [[nodiscard]] std::function<void()> ask(CapabilityKind) override { return {}; }
    void followReducedMotion(std::function<void(bool reduced)> handler) override {
        askReducedMotion(std::move(handler));
    }
    void followBlending(std::function<void(bool blends)> handler) override {
        overlayWindows_.followBlending(std::move(handler));
    }

private:
    Keyboard keyboard_;
    SessionKeyMonitors monitors_{keyboard_.monitors};
    Desktop desktop_;
    XcbOverlayWindows overlayWindows_;
    X11Screens screens_;
    Subscription frontmostWindow_;
    // Asked only whether there is a tray; without a connection there is none to see.
    std::unique_ptr<XcbDesktop> tray_ = XcbDesktop::connect();
    TrayStatusItem statusItem_{[this] {
        if (!tray_) return false;
        const auto selection = "_NET_SYSTEM_TRAY_S" + std::to_string(tray_->screen());
        return tray_->selectionHasOwner(internAtom(tray_->connection(), selection));
    }};
    QtPasteboard pasteboard_;
    SecretServiceKeychain keychain_;
    Pages pages_;
};

}  // namespace

std::unique_ptr<KeyboardLayout> makeKeyboardLayout() {
    auto made = std::make_unique<ConnectedLayout>();
    if (!made->connection().get()) return complain(noDisplay);
    if (!made->layout().available())
        return complain("the X server has no XKB extension, so the keyboard layout is not known");
    return made;
}

std::unique_ptr<TypingBackend> makeTypingBackend() {
    auto workspace = XcbDesktop::connect();
    auto typing = XcbDesktop::connect();
    if (!workspace || !typing) return complain(noDisplay);
    auto made = std::make_unique<X11Typing>(std::move(workspace), std::move(typing));
    if (!made->canType()) return complain("the X server has no XTEST extension, so nothing can be typed");
    return made;
}

bool prepareToStart() {
    // Passwords lie in this process's memory.
    if (!refuseCoreFiles())
        complain("a crash may leave a core file that holds passwords: the system refuses to forbid it");
    if (!XcbDesktop::connect()) return complain(noDisplay) != nullptr;
    // The overlay needs what only X11 gives: its place, its layer, and keys beside the focused application.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
    return true;
}

std::unique_ptr<Backend> makeBackend(MainThread& mainThread, Scheduler&) {
    auto workspace = XcbDesktop::connect();
    auto typing = XcbDesktop::connect();
    auto windows = XcbDesktop::connect();
    auto screens = XcbDesktop::connect();
    if (!workspace || !typing || !windows || !screens) return complain(noDisplay);
    return std::make_unique<X11Backend>(std::move(workspace), std::move(typing), std::move(windows), std::move(screens),
                                        mainThread);
}

std::unique_ptr<Defaults> makeDefaults(const std::optional<std::string>& settingsFile, MainThread* mainThread) {
    return std::make_unique<JsonDefaults>(
        settingsFile ? QString::fromStdString(*settingsFile) : JsonDefaults::defaultPath(), mainThread);
}

std::unique_ptr<Clock> makeClock() { return std::make_unique<SystemClock>(); }

std::string desktopName() { return qgetenv("DISPLAY").toStdString(); }

// Whoever asks has the time to load the module, which the running program leaves alone until there is a page, and to
// wait for the keyring.
std::vector<Capability> examineCapabilities() { return capabilitiesHere(webEngineTrouble(), true); }

std::string webEngineVersion() { return vantor::webEngineVersion(); }

bool hasPcKeyboards() { return true; }

void registerScriptFonts() { vantor::registerScriptFonts(); }

}  // namespace vantor::backend

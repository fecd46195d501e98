// macOS: the system's own services for keys, windows, settings, logins and pages; the toolkit for the rest.

#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtCore/QtGlobal>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QWidget>
#include <chrono>
#include <functional>
#include <utility>

#include "Backend.h"
#include "data/SessionQueue.h"
#include "platform/macos/AccessoryApplication.h"
#include "platform/macos/EventKeyboardLayout.h"
#include "platform/macos/EventMonitors.h"
#include "platform/macos/HidTapKeyPoster.h"
#include "platform/macos/NativeOverlayWindows.h"
#include "platform/macos/NativeView.h"
#include "platform/macos/PrivacyPermissions.h"
#include "platform/macos/ReducedMotion.h"
#include "platform/macos/SecItemKeychain.h"
#include "platform/macos/SharedWorkspace.h"
#include "platform/macos/StatusBarItem.h"
#include "platform/macos/SystemCapabilities.h"
#include "platform/macos/SystemScreens.h"
#include "platform/macos/UserDefaults.h"
#include "platform/macos/WebKitPage.h"
#include "platform/qt/JsonDefaults.h"
#include "platform/qt/QtPasteboard.h"
#include "platform/qt/ScriptFonts.h"
#include "platform/qt/SystemClock.h"

namespace vantor::backend {

namespace {

// The synthetic events, the layout that they ask, and whoever posts and hears them.
struct Keyboard {
    KeyboardEvents events;
    EventKeyboardLayout layout{events};
    SharedWorkspace workspace;
    HidTapKeyPoster poster{events};
    EventMonitors monitors;
};

class MacTyping final : public TypingBackend {
public:
    [[nodiscard]] TypingServices typing() override {
        return {keyboard_.layout, keyboard_.poster, keyboard_.monitors, keyboard_.workspace, keyboard_.workspace};
    }

private:
    Keyboard keyboard_;
};

// The layout, with the events that it asks.
class OwnLayout final : public KeyboardLayout {
public:
    [[nodiscard]] std::optional<Translation> translate(KeyCode keyCode, ModifierFlags flags) const override {
        return layout_.translate(keyCode, flags);
    }

private:
    KeyboardEvents events_;
    EventKeyboardLayout layout_{events_};
};

constexpr std::chrono::seconds betweenLooks{1};

class MacBackend final : public Backend {
public:
    MacBackend(MainThread& mainThread, Scheduler& scheduler)
        : keychain_(keychainQueue_, mainThread), scheduler_(scheduler) {
        becomeAccessoryApplication();
        // Not at once: what was added before the event loop turns may hear nothing, and is renewed by the first look.
        mainThread.post([this] { lookUntilAllowed(); });
    }

    [[nodiscard]] TypingServices typing() override {
        return {keyboard_.layout, keyboard_.poster, keyboard_.monitors, keyboard_.workspace, keyboard_.workspace};
    }
    [[nodiscard]] OverlayWindows& overlayWindows() override { return overlayWindows_; }
    [[nodiscard]] Screens& screens() override { return screens_; }
    [[nodiscard]] StatusItem& statusItem() override { return statusItem_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    [[nodiscard]] Keychain& keychain() override { return keychain_; }
    [[nodiscard]] std::unique_ptr<WebPage> makeWebPage() override {
        auto made = std::make_unique<WebKitPage>(
            [](const std::string& address) { QDesktopServices::openUrl(QUrl(QString::fromStdString(address))); });
        page_ = made.get();
        return made;
    }
    [[nodiscard]] PageSource pageSource() override {
        return {*page_, [this] {
                    if (!shownPage_) shownPage_ = widgetOfNativeView(page_->nativeView());
                    return shownPage_.data();
                }};
    }
    [[nodiscard]] std::vector<Capability> capabilities() override { return vantor::examineCapabilities(permissions_); }
    [[nodiscard]] std::function<void()> ask(CapabilityKind capability) override {
        if (capability == CapabilityKind::posting) return [this] { permissions_.ask(Kind::pressKeys); };
        // Monitors of other applications' keys want the one that posting wants, and only where that is not enough the
        // other.
        if (capability == CapabilityKind::rawKeys)
            return
                [this] { permissions_.ask(permissions_.granted(Kind::pressKeys) ? Kind::hearKeys : Kind::pressKeys); };
        return {};
    }
    void followBlending(std::function<void(bool blends)>) override {}  // always
    void followReducedMotion(std::function<void(bool reduced)> handler) override {
        reducedMotion_ = observeReducedMotion(std::move(handler));
    }

private:
    using Kind = PrivacyPermissions::Kind;

    // The hotkeys work from the moment on when nothing is missing, without a restart.
    void lookUntilAllowed() {
        const std::pair now(permissions_.granted(Kind::hearKeys), permissions_.granted(Kind::pressKeys));
        if (std::exchange(allowed_, now) != now) keyboard_.monitors.renew();
        if (now != std::pair(true, true)) scheduler_.after(betweenLooks, [this] { lookUntilAllowed(); });
    }

    Keyboard keyboard_;
    NativeOverlayWindows overlayWindows_;
    SystemScreens screens_;
    StatusBarItem statusItem_;
    QtPasteboard pasteboard_;
    SessionQueue keychainQueue_;
    SecItemKeychain keychain_;
    Scheduler& scheduler_;
    PrivacyPermissions permissions_{[this] { return keyboard_.monitors.heardOthers(); }};
    std::pair<bool, bool> allowed_;
    Subscription reducedMotion_;
    WebKitPage* page_ = nullptr;
    QPointer<QWidget> shownPage_;
};

}  // namespace

std::unique_ptr<KeyboardLayout> makeKeyboardLayout() { return std::make_unique<OwnLayout>(); }

std::unique_ptr<TypingBackend> makeTypingBackend() { return std::make_unique<MacTyping>(); }

bool prepareToStart() {
    // The toolkit would take the focus from the game when it starts, and whenever a window is raised. The bundle makes
    // Vantor an application without a place in the Dock.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    qputenv("QT_MAC_SET_RAISE_PROCESS", "0");
    return true;
}

std::unique_ptr<Backend> makeBackend(MainThread& mainThread, Scheduler& scheduler) {
    return std::make_unique<MacBackend>(mainThread, scheduler);
}

std::unique_ptr<Defaults> makeDefaults(const std::optional<std::string>& settingsFile, MainThread* mainThread) {
    if (settingsFile) return std::make_unique<JsonDefaults>(QString::fromStdString(*settingsFile), mainThread);
    return std::make_unique<UserDefaults>(mainThread);
}

std::unique_ptr<Clock> makeClock() { return std::make_unique<SystemClock>(); }

// One desktop for each user, which the name of the socket has already.
std::string desktopName() { return {}; }

std::vector<Capability> examineCapabilities() {
    return vantor::examineCapabilities(PrivacyPermissions([] { return false; }));
}

std::string webEngineVersion() { return {}; }

bool hasPcKeyboards() { return false; }

void registerScriptFonts() { vantor::registerScriptFonts(); }

}  // namespace vantor::backend

#include "app/AppObserver.h"

#include "accounts/CredentialFill.h"

#include <chrono>
#include <utility>

#include "app/HotkeyDispatcher.h"
#include "input/EmojiCommands.h"
#include "input/PastedText.h"
#include "platform/KeyClasses.h"

namespace vantor {

namespace {

// So that Command and V are up before the typing starts.
constexpr std::chrono::milliseconds pasteDelay{600};
constexpr std::chrono::seconds updateDelay{3};
constexpr std::size_t addAppMenuItemPosition = 0;
constexpr std::chrono::seconds leftOverTime{1};

}  // namespace

AppObserver::AppObserver(Needs needs)
    : needs_(std::move(needs)),
      focus_(needs_.workspace, needs_.data.defaults),
      data_(needs_.data),
      webViewStore_(needs_.makeWebPage(), needs_.styleSheet),
      credentials_(needs_.keychain, needs_.data.printLine),
      clipboardManager_({.typist = {needs_.keyboardLayout, needs_.keyPoster, needs_.typingFocus, needs_.pause},
                         .monitors = needs_.keyMonitors,
                         .workspace = needs_.workspace,
                         .typingThread = needs_.typingThread,
                         .mainThread = needs_.data.mainThread,
                         .say = [this](const std::string& line) { needs_.data.printLine("vantor: " + line); }}),
      // Not in the middle of a text, which would end there.
      clickFocus_({needs_.workspace, needs_.scheduler,
                   [this] { return visible_ && !clipboardManager_.isBusy() && focus_.mayGiveFocusToVantor(); },
                   [this] { window_->takeFocus(); }}),
      typingLine_({clipboardManager_, needs_.scheduler, [this](bool shown) { showTypingLine(shown); }}),
      typingObserver_(clipboardManager_.observe([this] { followTyping(); })) {
    data_.start();
    window_ = needs_.makeWindow(AppWindowName::main, *this);
    icon_ = needs_.makeWindow(AppWindowName::icon, *this);
    icon_->orderFront();
    emojiWindow_ = needs_.makeWindow(AppWindowName::emoji, *this);
    emojiWindow_->orderFront();
    observationToken_ = needs_.workspace.observeFrontmostApplication(
        [this](const std::string& identifier) { setCurrentApplication(identifier); });
    watchedEventsWindow_ = needs_.makeWindow(AppWindowName::watchedEvents, *this);
    watchedEventsWindow_->orderFront();
    registerKeyMonitors();
    // The first notice of the desktop came before the last window was there.
    updateWindows();
    // What the start does comes first.
    if (data_.catalogueStatus()->fetches) needs_.scheduler.after(updateDelay, [this] { data_.updateCatalogueIfDue(); });
}

AppObserver::~AppObserver() {
    typingWindow_.reset();
    watchedEventsWindow_.reset();
    emojiWindow_.reset();
    icon_.reset();
    window_.reset();
}

void AppObserver::setCurrentApplication(const std::string& identifier) {
    focus_.setCurrentApplication(identifier);
    addAppMenuItem_ = focus_.toggleEntry();
    needs_.statusItem.setEntry(addAppMenuItemPosition, addAppMenuItem_.title, addAppMenuItem_.enabled);
    updateWindows();
    clickFocus_.frontmostChanged();
}

void AppObserver::fillCredentials(const std::string& username) {
    clipboardManager_.typeString(fillText(credentials_.accounts(), username));
}

ApiKeyCheck::Needs AppObserver::apiKeyCheckNeeds() const {
    return {needs_.data.session, needs_.data.mainThread, needs_.data.hosts.api, needs_.data.printLine};
}

void AppObserver::updateWindows() {
    for (const WindowStep& step : windowPlan(focus_.isCurrentApplicationEnabled(), visible_)) perform(step);
    withholdPasteShortcut();
}

bool AppObserver::toggleApp() {
    if (!focus_.toggleEntry().enabled) return false;
    focus_.toggleCurrentApplication();
    setCurrentApplication(focus_.curApp().value_or(""));
    return true;
}

void AppObserver::closePressed() { setVisible(false); }

void AppObserver::iconPressed() { setVisible(!visible_); }

void AppObserver::openOverlay() { setVisible(true); }

void AppObserver::toggleByKey() { act({HotkeyAction::toggle, true}); }

void AppObserver::closeByKey() { act({HotkeyAction::close, visible_}); }

bool AppObserver::pasteByKey() {
    if (!isPasteShortcutOn(visible_, [this] { return focus_.isCurrentApplicationEnabled(); }, needs_.data.defaults))
        return false;
    clipboardManager_.typeLater(pasteDelay, [this] {
        const bool isGame = focus_.isCurrentApplicationEnabled();
        return isGame ? std::optional(pastedText(needs_.pasteboard.text())) : std::nullopt;
    });
    return true;
}

AppObserver::EmoteVerdict AppObserver::useEmote(const std::string& name) {
    const EmojiCommand* const command = findEmojiCommand(name);
    if (!command) return EmoteVerdict::unknown;
    if (!focus_.isCurrentApplicationEnabled()) return EmoteVerdict::notOverGame;
    EmojiCommands(clipboardManager_, needs_.data.defaults, needs_.data.clock).use(*command);
    return EmoteVerdict::used;
}

void AppObserver::setVisible(bool visible, bool replayCamera, const std::function<void()>& then) {
    visible_ = visible;
    updateWindows();
    if (visible) data_.updateCatalogueIfDue();
    if (replayCamera) replayActionCamera(then);
    clickFocus_.windowChanged();
}

void AppObserver::followTyping() {
    typingLine_.follow();
    // As after each return to the game, which may take the pointer again.
    if (!clipboardManager_.isBusy()) clickFocus_.frontmostChanged();
}

void AppObserver::showTypingLine(bool shown) {
    if (!shown) return typingWindow_->orderOut();
    if (!typingWindow_) typingWindow_ = needs_.makeWindow(AppWindowName::typing, *this);
    typingWindow_->orderFront();
}

void AppObserver::actOnDesktopShortcut(const std::string& id) {
    const bool isToggle = id == toggleShortcutId || id == secondToggleShortcutId;
    if (!isToggle && id != pasteShortcutId) return;
    ++leftOver_;
    needs_.scheduler.after(leftOverTime, [this] { --leftOver_; });
    act({isToggle ? HotkeyAction::toggle : HotkeyAction::paste, isToggle});
}

void AppObserver::dispatch(const KeyEvent& event) {
    // The end of a key that the desktop has kept for itself may still come.
    if (leftOver_ > 0 && event.keyCode != key_code::escape) return;
    act(decideHotkey(event, visible_, [this] { return focus_.isCurrentApplicationEnabled(); }, needs_.data.defaults));
}

void AppObserver::act(const HotkeyDecision& decision) {
    switch (decision.action) {
        case HotkeyAction::none:
            break;
        case HotkeyAction::paste:
            (void)pasteByKey();
            break;
        case HotkeyAction::close:
            clipboardManager_.stop();
            setVisible(false, decision.replayCamera);
            break;
        case HotkeyAction::toggle:
            clipboardManager_.stop();
            // The game has its camera key before it loses the keyboard.
            setVisible(!visible_, decision.replayCamera, [this, withKeyboard = decision.withKeyboard] {
                if (withKeyboard && visible_) window_->takeKeyboard();
            });
            break;
    }
}

void AppObserver::withholdPasteShortcut() {
    const bool isOn =
        isPasteShortcutOn(visible_, [this] { return focus_.isCurrentApplicationEnabled(); }, needs_.data.defaults);
    if (!isOn) return pasteShortcut_.reset();
    if (!pasteShortcut_) pasteShortcut_ = needs_.keyMonitors.withholdWithCommand(key_code::v);
}

void AppObserver::replayActionCamera(const std::function<void()>& then) {
    const auto follow = [then](const Typed&) {
        if (then) then();
    };
    const std::string keys = actionCameraText(needs_.data.defaults);
    if (keys.empty()) return follow({});
    clipboardManager_.pressReadableKeys(keys, follow);
}

void AppObserver::perform(const WindowStep& step) {
    if (step.kind == WindowStep::Kind::handFocusBack) return needs_.workspace.hideAndUnhideWithoutActivation();
    AppWindow* const window = find(step.window);
    if (!window) return;
    if (step.kind == WindowStep::Kind::orderOut) return window->orderOut();
    // A window that comes up must not show the times of another zone.
    data_.followZone();
    window->orderFront();
}

AppWindow* AppObserver::find(AppWindowName name) const {
    switch (name) {
        case AppWindowName::main:
            return window_.get();
        case AppWindowName::icon:
            return icon_.get();
        case AppWindowName::emoji:
            return emojiWindow_.get();
        case AppWindowName::watchedEvents:
            return watchedEventsWindow_.get();
        case AppWindowName::typing:
            return typingWindow_.get();
    }
    return nullptr;
}

void AppObserver::registerKeyMonitors() {
    globalKeyUp_ = needs_.keyMonitors.addGlobalMonitor(maskOf(KeyEventType::keyUp),
                                                       [this](const KeyEvent& event) { dispatch(event); });
    globalKeyDown_ = needs_.keyMonitors.addGlobalMonitor(maskOf(KeyEventType::keyDown), [](const KeyEvent&) {});
    localKeyUp_ = needs_.keyMonitors.addLocalMonitor(maskOf(KeyEventType::keyUp), [this](const KeyEvent& event) {
        dispatch(event);
        return KeyMonitors::Passing::passOn;
    });
    needs_.keyMonitors.offerToDesktop(desktopShortcuts(needs_.data.defaults),
                                      [this](const std::string& id) { actOnDesktopShortcut(id); });
    settingsObserver_ = needs_.data.defaults.observe([this](const std::string&) { withholdPasteShortcut(); });
}

}  // namespace vantor

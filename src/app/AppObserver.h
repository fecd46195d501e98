#pragma once
// The application's one state: it owns the four windows, the data, the typing and the pages, and wires the desktop's
// notices to them. What there is to decide, smaller classes decide. Main thread; made once, lives until the process
// ends. The session queue must have run its last task before it goes.

#include <functional>
#include <memory>
#include <string>

#include "accounts/AccountsCredentials.h"
#include "app/ApiKeyCheck.h"
#include "app/GameData.h"
#include "app/GameFocus.h"
#include "app/Tabs.h"
#include "app/WindowPlan.h"
#include "browser/WebViewStore.h"
#include "input/ClipboardManager.h"
#include "platform/AppWindows.h"
#include "platform/KeyMonitors.h"
#include "platform/Pasteboard.h"
#include "platform/StatusItem.h"

namespace vantor {

class AppObserver {
public:
    using WindowFactory = std::function<std::unique_ptr<AppWindow>(AppWindowName, AppObserver&)>;

    // What it is made of; all of it outlives it.
    struct Needs {
        GameData::Needs data;
        KeyMonitors& keyMonitors;
        KeyPoster& keyPoster;
        KeyboardLayout& keyboardLayout;
        Workspace& workspace;
        StatusItem& statusItem;
        Pasteboard& pasteboard;
        Pause& pause;
        Keychain& keychain;
        // Once, before any view.
        std::function<std::unique_ptr<WebPage>()> makeWebPage;
        WebViewStore::StyleSheet styleSheet;
        // Called while the state is being made, after everything that a view may ask it for.
        WindowFactory makeWindow;
    };

    explicit AppObserver(Needs needs);
    ~AppObserver();
    AppObserver(const AppObserver&) = delete;
    AppObserver& operator=(const AppObserver&) = delete;

    void setCurrentApplication(const std::string& identifier);
    void updateWindows();
    // Enables or disables the overlay on the current application.
    void toggleApp();

    // The player's wish to see the main window.
    [[nodiscard]] bool visible() const { return visible_; }
    // None of these sends keys to the game, unlike the hotkeys.
    void closePressed();
    void iconPressed();
    void openOverlay();
    // Types a stored login into the frontmost application.
    void fillCredentials(const std::string& username);

    [[nodiscard]] GameData& data() { return data_; }
    [[nodiscard]] Tabs& tabs() { return tabs_; }
    [[nodiscard]] WebViewStore& webViewStore() { return webViewStore_; }
    [[nodiscard]] AccountsCredentials& credentials() { return credentials_; }
    [[nodiscard]] ClipboardManager& clipboardManager() { return clipboardManager_; }
    [[nodiscard]] Defaults& defaults() { return needs_.data.defaults; }
    [[nodiscard]] UrlSession& session() { return needs_.data.session; }
    [[nodiscard]] MainThread& mainThread() { return needs_.data.mainThread; }
    [[nodiscard]] Pasteboard& pasteboard() { return needs_.pasteboard; }
    [[nodiscard]] KeyMonitors& keyMonitors() { return needs_.keyMonitors; }
    [[nodiscard]] ApiKeyCheck::Needs apiKeyCheckNeeds() const;
    [[nodiscard]] const Clock& clock() const { return needs_.data.clock; }
    [[nodiscard]] const std::string& addAppMenuItemTitle() const { return addAppMenuItemTitle_; }

private:
    void setVisible(bool visible);
    void dispatch(const KeyEvent& event);
    void replayActionCamera();
    void pasteClipboard();
    void withholdPasteShortcut();
    void perform(const WindowStep& step);
    [[nodiscard]] AppWindow* find(AppWindowName name) const;
    void registerKeyMonitors();

    Needs needs_;
    Subscription observationToken_;
    std::unique_ptr<AppWindow> window_;
    std::unique_ptr<AppWindow> icon_;
    std::unique_ptr<AppWindow> emojiWindow_;
    std::unique_ptr<AppWindow> watchedEventsWindow_;
    GameFocus focus_;
    bool visible_ = false;
    GameData data_;
    WebViewStore webViewStore_;
    AccountsCredentials credentials_;
    std::string addAppMenuItemTitle_ = "Allow on application";
    ClipboardManager clipboardManager_;
    Tabs tabs_;
    Subscription globalKeyUp_;
    Subscription globalKeyDown_;
    Subscription localKeyUp_;
    Subscription pasteShortcut_;  // kept from the game while it pastes
    Subscription settingsObserver_;
};

}  // namespace vantor

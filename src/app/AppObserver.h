#pragma once
// The application's one state: it owns the windows, the data, the typing and the pages, and wires the desktop's
// notices to them. What there is to decide, smaller classes decide. Main thread; made once, lives until the process
// ends. The session queue must have run its last task before it goes.

#include <functional>
#include <memory>
#include <string>

#include "accounts/AccountsCredentials.h"
#include "app/AppParts.h"
#include "app/ClickFocus.h"
#include "app/GameData.h"
#include "app/GameFocus.h"
#include "app/Tabs.h"
#include "app/TypingLine.h"
#include "app/WindowPlan.h"
#include "browser/WebViewStore.h"
#include "input/ClipboardManager.h"
#include "platform/AppWindows.h"
#include "platform/KeyMonitors.h"
#include "platform/Pasteboard.h"
#include "platform/StatusItem.h"

namespace vantor {

struct HotkeyDecision;

class AppObserver final : public OverlayPart,
                          public SettingsPart,
                          public DataPart,
                          public TypingPart,
                          public AccountsPart,
                          public PagesPart,
                          public NetworkPart {
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
        Scheduler& scheduler;
        Keychain& keychain;
        TypingFocus& typingFocus;
        TaskQueue& typingThread;
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
    // Enables or disables the overlay on the current application. False where that is Vantor itself.
    bool toggleApp();

    // The player's wish to see the main window.
    [[nodiscard]] bool visible() const { return visible_; }
    void closePressed() override;
    void iconPressed() override;
    // Sends no keys to the game either.
    void openOverlay();
    // What the toggle hotkey, Escape and the paste shortcut do, for desktops that give Vantor no keys. Nothing is
    // pasted where the shortcut would not: false then.
    void toggleByKey();
    void closeByKey();
    [[nodiscard]] bool pasteByKey();
    // By its emoji or its whole command.
    enum class EmoteVerdict { used, unknown, notOverGame };
    [[nodiscard]] EmoteVerdict useEmote(const std::string& name);
    void fillCredentials(const std::string& username) override;

    [[nodiscard]] GameData& data() override { return data_; }
    [[nodiscard]] const Clock& clock() const override { return needs_.data.clock; }
    [[nodiscard]] Tabs& tabs() override { return tabs_; }
    [[nodiscard]] WebViewStore& webViewStore() override { return webViewStore_; }
    [[nodiscard]] AccountsCredentials& credentials() override { return credentials_; }
    [[nodiscard]] ClipboardManager& clipboardManager() override { return clipboardManager_; }
    [[nodiscard]] Pasteboard& pasteboard() override { return needs_.pasteboard; }
    [[nodiscard]] KeyMonitors& keyMonitors() override { return needs_.keyMonitors; }
    [[nodiscard]] Defaults& defaults() override { return needs_.data.defaults; }
    [[nodiscard]] UrlSession& session() override { return needs_.data.session; }
    [[nodiscard]] MainThread& mainThread() override { return needs_.data.mainThread; }
    [[nodiscard]] ApiKeyCheck::Needs apiKeyCheckNeeds() const override;
    [[nodiscard]] const ToggleEntry& addAppMenuItem() const { return addAppMenuItem_; }

private:
    // With the camera key where a hotkey asks for it. `then` follows that.
    void setVisible(bool visible, bool replayCamera = false, const std::function<void()>& then = {});
    void dispatch(const KeyEvent& event);
    void act(const HotkeyDecision& decision);
    void actOnDesktopShortcut(const std::string& id);
    void replayActionCamera(const std::function<void()>& then);
    void showTypingLine(bool shown);
    void followTyping();
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
    std::unique_ptr<AppWindow> typingWindow_;
    GameFocus focus_;
    bool visible_ = false;
    int leftOver_ = 0;  // shortcuts that the desktop has told of just now
    GameData data_;
    WebViewStore webViewStore_;
    AccountsCredentials credentials_;
    ToggleEntry addAppMenuItem_{"Allow on application"};
    ClipboardManager clipboardManager_;
    Tabs tabs_;
    ClickFocus clickFocus_;
    TypingLine typingLine_;
    Subscription typingObserver_;
    Subscription globalKeyUp_;
    Subscription globalKeyDown_;
    Subscription localKeyUp_;
    Subscription pasteShortcut_;  // kept from the game while it pastes
    Subscription settingsObserver_;
};

}  // namespace vantor

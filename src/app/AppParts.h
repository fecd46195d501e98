#pragma once
// The application's state in parts: AppObserver is all of them, and a view is handed it as those that it needs, so that
// it reaches nothing else. Main thread; all of it lives until the process ends.

#include <string>

#include "app/ApiKeyCheck.h"

namespace vantor {

class AccountsCredentials;
class ClipboardManager;
class Clock;
class Defaults;
class GameData;
class KeyMonitors;
class Pasteboard;
class Tabs;
class WebViewStore;

// The player's wish to see the main window. Neither sends keys to the game, unlike the hotkeys.
class OverlayPart {
public:
    virtual void closePressed() = 0;
    virtual void iconPressed() = 0;

protected:
    ~OverlayPart() = default;
};

class SettingsPart {
public:
    [[nodiscard]] virtual Defaults& defaults() = 0;

protected:
    ~SettingsPart() = default;
};

// Timeline, progress and bestiary, and the clock that they are shown by.
class DataPart {
public:
    [[nodiscard]] virtual GameData& data() = 0;
    [[nodiscard]] virtual const Clock& clock() const = 0;

protected:
    ~DataPart() = default;
};

// What goes into the game, and what comes from the keyboard.
class TypingPart {
public:
    [[nodiscard]] virtual ClipboardManager& clipboardManager() = 0;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    [[nodiscard]] virtual KeyMonitors& keyMonitors() = 0;

protected:
    ~TypingPart() = default;
};

class AccountsPart {
public:
    [[nodiscard]] virtual AccountsCredentials& credentials() = 0;
    // Types a stored login into the frontmost application.
    virtual void fillCredentials(const std::string& username) = 0;

protected:
    ~AccountsPart() = default;
};

// Which tab is shown, and the one page of the wiki.
class PagesPart {
public:
    [[nodiscard]] virtual Tabs& tabs() = 0;
    [[nodiscard]] virtual WebViewStore& webViewStore() = 0;

protected:
    ~PagesPart() = default;
};

// Requests of a view's own, whose answers come on the main thread.
class NetworkPart {
public:
    [[nodiscard]] virtual UrlSession& session() = 0;
    [[nodiscard]] virtual MainThread& mainThread() = 0;
    [[nodiscard]] virtual ApiKeyCheck::Needs apiKeyCheckNeeds() const = 0;

protected:
    ~NetworkPart() = default;
};

}  // namespace vantor

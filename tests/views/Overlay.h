#pragma once
// The overlay as the program makes it, all its windows, with doubles on the far side of the seam only. Main thread.

#include <gmock/gmock.h>

#include <QtCore/QPointer>

#include <map>
#include <memory>

#include "KitPlayer.h"
#include "app/AppDelegate.h"
#include "app/view/MainWindow.h"
#include "app/view/TabPositions.h"
#include "app/view/ViewWindows.h"
#include "base/AtOnce.h"
#include "browser/LazyWebPage.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeKeyMonitors.h"
#include "fake/FakeKeyPoster.h"
#include "fake/FakeKeyboardLayout.h"
#include "fake/FakeKeychain.h"
#include "fake/FakeMainThread.h"
#include "fake/FakePasteboard.h"
#include "fake/FakePause.h"
#include "fake/FakeScheduler.h"
#include "fake/FakeScreens.h"
#include "fake/FakeStatusItem.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "fake/FakeWorkspace.h"
#include "ui/Fonts.h"

namespace vantor {

// Records what is asked for the one window whose frame may be kept, and the natures of all.
struct RecordedNature final : OverlayWindows {
    void prepare(NativeWindow, WindowNature nature) override { natures.push_back(nature); }
    bool keepFrame(NativeWindow window, const std::string& name) override {
        list = window;
        calls.push_back("keep " + name);
        return keepsFrames;
    }
    void orderFront(NativeWindow window) override {
        if (window == list) calls.emplace_back("front");
    }
    void takeFocus(NativeWindow) override {}

    bool keepsFrames = false;
    NativeWindow list = 0;
    std::vector<std::string> calls;
    std::vector<WindowNature> natures;
};

// The browser's engine: what it was asked for.
struct RecordedEngine final : WebEngine {
    explicit RecordedEngine(std::vector<std::string>& kept) : asked(kept) {}
    void setObserver(Observer) override {}
    void setDrawsBackground(bool) override {}
    void load(const std::string& url, int) override { asked.push_back(url); }
    void goBack() override { asked.emplace_back("back"); }
    void goForward() override { asked.emplace_back("forward"); }
    void addUserScript(const std::string&) override {}

    std::vector<std::string>& asked;
};

// A section of the catalogue as its service sends it: the names, each with more of its members, follow each other all
// day long, so many minutes apart.
[[nodiscard]] inline std::string sectionOf(int id, const std::vector<std::pair<QString, QString>>& events, int apart) {
    QStringList segments;
    QStringList pattern;
    for (const auto& [name, more] : events) {
        const auto number = segments.size() + 1;
        segments << QStringLiteral(R"({"id":%1,"name":"%2","chatlink":"[&x]"%3})").arg(number).arg(name, more);
        pattern << QStringLiteral(R"({"r":%1,"d":%2})").arg(number).arg(apart);
    }
    return QStringLiteral(R"({"id":%1,"category":"Core Tyria","name":"World bosses","active":true,)"
                          R"("segments":[%2],"sequences":{"partial":[],"pattern":[%3]}})")
        .arg(QString::number(id), segments.join(QLatin1Char(',')), pattern.join(QLatin1Char(',')))
        .toStdString();
}

class Overlay : public testing::Test {
protected:
    ~Overlay() override {
        setTextScale(1);
        delegate.reset();
        for (QWidget* const menu : shown()) menu->close();
        settle();
    }

    // Again: the program's next start, with what is stored by then.
    void launch() {
        delegate.reset();
        windows = std::make_unique<ViewWindows>(viewNeeds());
        delegate = std::make_unique<AppDelegate>(
            AppObserver::Needs{
                {defaults,
                 session,
                 queue,
                 mainThread,
                 clock,
                 {"https://api", "qrc:/catalogue"},
                 [this](const std::string& line) { printed.push_back(line); },
                 [](const std::string&) {}},
                monitors,
                poster,
                layout,
                workspace,
                statusItem,
                pasteboard,
                pause,
                scheduler,
                keychain,
                workspace,
                typingThread,
                [this] {
                    auto made = std::make_unique<LazyWebPage>([this]() -> std::unique_ptr<WebEngine> {
                        return engineIsMissing ? nullptr : std::make_unique<RecordedEngine>(asked);
                    });
                    webPage = made.get();
                    return made;
                },
                [] { return std::nullopt; },
                [this](AppWindowName name, AppObserver& observer) { return windows->make(name, observer); }},
            [] {});
        workspace.bringToFront("net.arena.Guild-Wars-2");
        observer().openOverlay();
        settle();
    }
    // Its main window with this tab.
    MainWindow& open(std::size_t tab) {
        observer().tabs().select(tab);
        settle();
        return mainWindow();
    }
    AppObserver& observer() { return delegate->appObserver(); }
    static std::vector<QWidget*> shown() {
        std::vector<QWidget*> found;
        for (QWidget* const each : QApplication::topLevelWidgets())
            if (each->isVisible()) found.push_back(each);
        return found;
    }
    template <typename Window>
    static Window& shownWindow() {
        for (QWidget* const each : shown())
            if (auto* const window = dynamic_cast<Window*>(each)) return *window;
        throw std::runtime_error("no such window is shown");
    }
    static MainWindow& mainWindow() { return shownWindow<MainWindow>(); }
    // What the services are asked is answered, in turn, until nothing is.
    void answer(const std::function<std::optional<std::string>(const std::string& url)>& bodyOf) {
        do {
            queue.runAll();
            mainThread.runAll();
            queue.runAll();
        } while (session.answerBy(bodyOf));
        settle();
    }
    // With what is served under a part of the address.
    void load() {
        answer([this](const std::string& url) -> std::optional<std::string> {
            for (const auto& [part, body] : served)
                if (url.find(part) != std::string::npos) return body;
            return "[]";
        });
    }
    // The keys that went down since the last call, in order.
    std::vector<KeyCode> typed() {
        mainThread.runAll();
        std::vector<KeyCode> codes;
        for (const PostedKey& key : std::exchange(poster.posted, {}))
            if (key.down) codes.push_back(key.keyCode);
        return codes;
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    FakeClock clock{1'000, 0};
    FakeKeyMonitors monitors;
    FakeKeyPoster poster;
    FakeKeyboardLayout layout;
    FakeWorkspace workspace;
    FakeStatusItem statusItem;
    FakeKeychain keychain;
    FakePasteboard pasteboard;
    FakePause pause;
    TaskQueueAtOnce typingThread;
    FakeScreens screens;
    FakeScheduler scheduler;
    RecordedNature natures;
    std::vector<SystemCapability> capabilities{{"Status bar", true, "is there"}, {"Web pages", false, "install it"}};
    std::map<std::string, std::string> served;
    std::vector<std::string> asked, opened, printed;  // of the page, in the default browser, on the terminal
    bool engineIsMissing = false;
    QPointer<QWidget> enginesWidget;
    LazyWebPage* webPage = nullptr;
    std::unique_ptr<ViewWindows> windows;
    std::unique_ptr<AppDelegate> delegate;

private:
    ViewNeeds viewNeeds() {
        return {
            .overlayWindows = natures,
            .screens = screens,
            .scheduler = scheduler,
            .webHosts = {"https://wiki", "https://videos", "https://search"},
            .accountSite = "https://account",
            .feedbackEndpoint = "https://feedback/api/message",
            .supportData = {"Somebody.1234", {{"xmr", "Coin", "wallet", "memo"}}, "https://licence"},
            .webPage = [this] { return PageSource{*webPage, [this] { return enginesWidget = new QWidget; }}; },
            .translator =
                [this] { return TranslatorNeeds{[this](const Script& script) { return script.title == fontOf; }, {}}; },
            .examineSystem = [this] { return capabilities; },
            .openLink = [this](const std::string& address) { opened.push_back(address); },
            .menuEntries = [this] { return delegate->menuEntries(); },
            .pcKeyboards = true};
    }

protected:
    std::string fontOf = "New Krytan";  // the only script whose font is here
};

}  // namespace vantor

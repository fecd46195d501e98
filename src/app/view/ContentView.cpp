#include "app/view/ContentView.h"

#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "accounts/view/AccountsView.h"
#include "app/WindowPlaces.h"
#include "app/view/TabPositions.h"
#include "app/view/TimelineOf.h"
#include "data/SettingKeys.h"
#include "feedback/view/Support.h"
#include "input/view/HotkeyButton.h"
#include "input/view/HotkeyText.h"
#include "input/view/WaypointButton.h"
#include "timers/view/BestiaryView.h"
#include "timers/view/TimerSettingsView.h"
#include "timers/view/TimersView.h"

namespace vantor {

namespace {

QRect gamesScreen(const Screens& screens) {
    const std::vector<Screen> all = screens.all();
    const Rect& frame = screenOf(screens.frontmostWindow(), all).frame;
    return {frame.x, frame.y, frame.width, frame.height};
}

}  // namespace

ContentView::ContentView(AppObserver& appObserver, const ViewNeeds& needs, WatchedFeed& watched, QWidget* parent)
    : QWidget(parent),
      appObserver_(appObserver),
      needs_(needs),
      apiKey_(appObserver.defaults(), appObserver.apiKeyCheckNeeds(), [&appObserver] { appObserver.data().restart(); }),
      titleBar_(new TitleBar([&appObserver] { appObserver.closePressed(); }, this)),
      tabRow_(new TabRow(appObserver.tabs(), this)),
      content_(new QStackedWidget(this)) {
    setCursor(Qt::ArrowCursor);
    auto* const inner = new QVBoxLayout;
    inner->setContentsMargins(20, 2, 12, 8);
    inner->setSpacing(6);
    inner->addWidget(tabRow_);
    inner->addWidget(content_, 1);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(titleBar_);
    column->addLayout(inner, 1);

    selection_ = appObserver_.tabs().changed.observe([this] { showTab(); });
    settings_ = appObserver_.defaults().observe([this](const std::string& key) {
        if (key == settings::windowToggleEvent) showTitle();
    });
    const auto showBadge = [this, &watched] { tabRow_->setBadge(tab_position::timers, watched.badgeText()); };
    badge_ = watched.observe(showBadge);
    showBadge();
    showTab();
}

void ContentView::showTab() {
    const std::size_t position = shownTab(appObserver_.tabs().selected());
    QWidget*& page = pages_.at(position);
    if (!page) {
        page = makePage(position);
        if (content_->indexOf(page) < 0) content_->addWidget(page);
    }
    content_->setCurrentWidget(page);
    if (web_)
        web_->show(position == tab_position::home       ? WebPanel::Tab::gameUpdates
                   : position == tab_position::internet ? WebPanel::Tab::internet
                                                        : WebPanel::Tab::none);
    showTitle();
}

void ContentView::showTitle() {
    titleBar_->setTexts(QString::fromStdString(appObserver_.tabs().title()),
                        hotkeyHint(appObserver_.defaults().get<std::string>(settings::windowToggleEvent)));
}

QWidget* ContentView::makePage(std::size_t position) {
    switch (position) {
        case tab_position::timers:
            return makeTimers();
        case tab_position::translator:
            return new TranslatorView(needs_.translator(), content_);
        case tab_position::bestiary:
            return makeBestiary();
        case tab_position::support:
            return new Support({.message = {appObserver_.session(), appObserver_.mainThread(), needs_.feedbackEndpoint},
                                .clipboardManager = appObserver_.clipboardManager(),
                                .pasteboard = appObserver_.pasteboard(),
                                .data = needs_.supportData,
                                .openLink = needs_.openLink},
                               content_);
        case tab_position::settings:
            return makeSettings();
        default:
            if (!web_) web_ = new WebPanel(needs_.webPage(), appObserver_.webViewStore(), needs_.webHosts, content_);
            return web_;
    }
}

QWidget* ContentView::makeTimers() {
    GameData& gameData = appObserver_.data();
    const ChatLinkNeeds chatLink{appObserver_.clipboardManager(), appObserver_.pasteboard(), appObserver_.defaults()};
    return new TimersView(
        {.source = timelineOf(appObserver_),
         .state = [&gameData] { return gameData.timersState(); },
         .progress = [&gameData] { return gameData.eventsProgress(); },
         .names = gameData.achievementNames(),
         .makeWaypointButton =
             [this, chatLink](const QString& link, QWidget* parent) {
                 return new WaypointButton(link, chatLink, needs_.scheduler, parent);
             },
         .openWiki = [this](const std::string& page) { openPage(wikiPageAddress(needs_.webHosts, page)); },
         .emptyActions = emptyActions()},
        content_);
}

QWidget* ContentView::makeBestiary() {
    GameData& gameData = appObserver_.data();
    return new BestiaryView(
        {.categories = [&gameData] { return gameData.beasts(); },
         .progress = [&gameData] { return gameData.bestiaryProgress(); },
         .state = [&gameData] { return gameData.bestiaryState(); },
         .observe = [&gameData](std::function<void()> handler) { return gameData.observe(std::move(handler)); },
         .lookUp = [this](const std::string& family) { openPage(lookUpAddress(needs_.webHosts, family)); },
         .emptyActions = emptyActions()},
        content_);
}

QWidget* ContentView::makeSettings() {
    const HotkeyNeeds hotkeys{appObserver_.defaults(), appObserver_.keyMonitors(),
                              [this](WId window, WindowNature nature) {
                                  needs_.overlayWindows.prepare(static_cast<NativeWindow>(window), nature);
                              },
                              [this] { return gamesScreen(needs_.screens); }};
    const auto text = [](const std::string& host) { return QString::fromStdString(host); };
    settingsView_ = new SettingsView(
        {.defaults = appObserver_.defaults(),
         .apiKey = apiKey_,
         .makeHotkeyField =
             [hotkeys](const HotkeySetting& setting, QWidget* parent) {
                 return new HotkeyButton(setting.message, setting.primaryKey, setting.secondaryKey, hotkeys, parent);
             },
         .makeTimersPage =
             [this](QWidget* parent) {
                 return new TimerSettingsView(
                     appObserver_.defaults(), [this] { appObserver_.data().reloadEvents(); }, parent);
             },
         .makeAccountsPage =
             [this](QWidget* parent) {
                 return new AccountsView(
                     appObserver_.credentials(),
                     [this](const std::string& name) { appObserver_.fillCredentials(name); }, parent);
             },
         .examineSystem = needs_.examineSystem,
         .openLink = [this](const QString& address) { needs_.openLink(address.toStdString()); },
         .helpHosts = {text(needs_.webHosts.wiki), text(needs_.accountSite)}},
        content_);
    return settingsView_;
}

EmptyListActions ContentView::emptyActions() {
    return {.openKeyField = [this] { openSettings(SettingsView::Page::general); },
            .openFilters = [this] { openSettings(SettingsView::Page::timers); },
            .clearSearch = {},
            .tryAgain = [this] { appObserver_.data().restart(); }};
}

void ContentView::openSettings(SettingsView::Page page) {
    appObserver_.tabs().select(tab_position::settings);
    settingsView_->select(page);
}

void ContentView::openPage(const std::string& address) {
    appObserver_.tabs().select(tab_position::internet);
    appObserver_.webViewStore().load(address);
}

}  // namespace vantor

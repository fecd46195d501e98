#include "app/view/ContentView.h"

#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "app/GameData.h"
#include "app/view/TabPositions.h"
#include "browser/WebViewStore.h"
#include "data/SettingKeys.h"
#include "input/view/HotkeyText.h"
#include "platform/Defaults.h"
#include "translators/view/TranslatorView.h"
#include "ui/NineParts.h"

namespace vantor {

namespace {

constexpr int groundLeft = 8;  // where the panel's torn edge ends

}  // namespace

ContentView::ContentView(AppObserver& appObserver, const ViewNeeds& needs, WatchedFeed& watched, QWidget* parent)
    : QWidget(parent),
      appObserver_(appObserver),
      needs_(needs),
      apiKey_(appObserver.defaults(), appObserver.apiKeyCheckNeeds(), [&appObserver] { appObserver.data().restart(); }),
      tabRow_(new TabRow(appObserver.tabs(), this)),
      firstSteps_(new FirstStepsView(
          appObserver.defaults(), [this](FirstStep step) { lead(step); }, this)),
      // After the tabs, so that the keyboard comes to the button that closes last.
      titleBar_(new TitleBar([&appObserver] { appObserver.closePressed(); }, this)),
      content_(new QStackedWidget(this)) {
    setCursor(Qt::ArrowCursor);
    auto* const inner = new QVBoxLayout;
    inner->setContentsMargins(20, 2, 12, 8);
    inner->setSpacing(6);
    inner->addWidget(tabRow_);
    inner->addWidget(firstSteps_);
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
    firstSteps_->setWanted(position == tab_position::home);
    if (web_)
        web_->show(position == tab_position::home       ? WebPanel::Tab::gameUpdates
                   : position == tab_position::internet ? WebPanel::Tab::internet
                                                        : WebPanel::Tab::none);
    showTitle();
}

void ContentView::showTitle() {
    const auto hotkey = appObserver_.defaults().get<std::string>(settings::windowToggleEvent);
    titleBar_->setTexts(QString::fromStdString(appObserver_.tabs().title()), hotkeyHint(hotkey),
                        hotkeyWords(hotkey.value_or(""), needs_.pcKeyboards));
}

QWidget* ContentView::makePage(std::size_t position) {
    switch (position) {
        case tab_position::timers:
            timersView_ = makeTimersTab(appObserver_, appObserver_, appObserver_, needs_, links(), content_);
            return timersView_;
        case tab_position::translator:
            return new TranslatorView(needs_.translator(), content_);
        case tab_position::bestiary:
            return makeBestiaryTab(appObserver_, needs_, links(), content_);
        case tab_position::support:
            return makeSupportTab(appObserver_, appObserver_, needs_, content_);
        case tab_position::settings:
            settingsView_ = makeSettingsTab(appObserver_, appObserver_, appObserver_, appObserver_, apiKey_, needs_,
                                            links(), content_);
            return settingsView_;
        default:
            if (!web_) web_ = new WebPanel(needs_.webPage(), appObserver_.webViewStore(), needs_.webHosts, content_);
            return web_;
    }
}

TabLinks ContentView::links() {
    return {.openPage = [this](const std::string& address) { openPage(address); },
            .emptyActions = {.openKeyField = [this] { lead(FirstStep::key); },
                             .openFilters = [this] { openSettings(SettingsView::Page::timers); },
                             .clearSearch = {},
                             .tryAgain = [this] { appObserver_.data().restart(); },
                             .showWithoutProgress = [this] { appObserver_.data().showWithoutProgress(); }},
            .openTimers = [this] { appObserver_.tabs().select(tab_position::timers); }};
}

void ContentView::openSettings(SettingsView::Page page) {
    appObserver_.tabs().select(tab_position::settings);
    settingsView_->select(page);
}

void ContentView::lead(FirstStep step) {
    switch (step) {
        case FirstStep::key:
            openSettings(SettingsView::Page::general);
            return settingsView_->leadToKey();
        case FirstStep::hotkey:
            openSettings(SettingsView::Page::general);
            return settingsView_->leadToHotkey();
        case FirstStep::watchedEvent:
            appObserver_.tabs().select(tab_position::timers);
            return timersView_->leadToWatch();
    }
}

// The ground of the tabs and their pages; the title's stroke lies on the panel above it.
void ContentView::paintEvent(QPaintEvent*) {
    const QRect frame = rect().adjusted(groundLeft, titleBar_->height(), 0, 0);
    if (frame.isEmpty()) return;
    if (ground_.deviceIndependentSize().toSize() != frame.size() || ground_.devicePixelRatio() != devicePixelRatioF())
        ground_ = drawNineParts(QStringLiteral("content.bg"), frame.size(), devicePixelRatioF());
    QPainter(this).drawPixmap(frame.topLeft(), ground_);
}

void ContentView::openPage(const std::string& address) {
    appObserver_.tabs().select(tab_position::internet);
    appObserver_.webViewStore().load(address);
}

}  // namespace vantor

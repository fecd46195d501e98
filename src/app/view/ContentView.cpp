#include "app/view/ContentView.h"

#include <QtWidgets/QVBoxLayout>

#include "app/view/TabRow.h"
#include "app/view/TabWords.h"
#include "data/SettingKeys.h"

namespace vantor {

namespace {

constexpr std::size_t timersPosition = 1;

TimersSource timersSource(AppObserver& appObserver) {
    GameData& data = appObserver.data();
    return {appObserver.clock(), appObserver.defaults(), [&data] { return data.timeline(); },
            [&data] { return wordsFor(data.state()); }, [&data] { data.followZone(); }};
}

}  // namespace

ContentView::ContentView(AppObserver& appObserver, QWidget* parent)
    : QWidget(parent),
      appObserver_(appObserver),
      titleBar_(new TitleBar([&appObserver] { appObserver.closePressed(); }, this)),
      content_(new QStackedWidget(this)),
      quiet_(new QuietText(content_)),
      timers_(new TimersTab(timersSource(appObserver), content_)) {
    setCursor(Qt::ArrowCursor);
    auto* const inner = new QVBoxLayout;
    inner->setContentsMargins(20, 2, 12, 8);
    inner->setSpacing(6);
    inner->addWidget(new TabRow(appObserver.tabs(), this));
    inner->addWidget(content_, 1);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(titleBar_);
    column->addLayout(inner, 1);
    content_->addWidget(quiet_);
    content_->addWidget(timers_);

    selection_ = appObserver_.tabs().changed.observe([this] { showTab(); });
    data_ = appObserver_.data().observe([this] { timers_->refresh(); });
    settings_ = appObserver_.defaults().observe([this](const std::string& key) { followSetting(key); });
    showTab();
}

void ContentView::showTab() {
    const std::size_t position = shownTab(appObserver_.tabs().selected());
    if (position == timersPosition) {
        content_->setCurrentWidget(timers_);
    } else {
        const TimersSource::Words words = wordsForTab(position);
        quiet_->setText(words.title, words.sentence);
        content_->setCurrentWidget(quiet_);
    }
    showTitle();
}

void ContentView::showTitle() {
    titleBar_->setTexts(QString::fromStdString(appObserver_.tabs().title()),
                        hotkeyHint(appObserver_.defaults().get<std::string>(settings::windowToggleEvent)));
}

void ContentView::followSetting(const std::string& key) {
    if (key == settings::windowToggleEvent) showTitle();
    if (key == settings::apiKey || key == settings::timerWindowDuration) timers_->refresh();
}

}  // namespace vantor

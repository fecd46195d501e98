#include "timers/view/TimersView.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "data/SettingKeys.h"
#include "timers/VisibleWindow.h"
#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

QString eventsText(std::size_t count) {
    return QString::number(count) + (count == 1 ? QStringLiteral(" event") : QStringLiteral(" events"));
}

}  // namespace

TimersView::TimersView(TimersNeeds needs, QWidget* parent)
    : QWidget(parent),
      needs_(std::move(needs)),
      search_(new GW2TextField(QStringLiteral("Search"), this)),
      count_(new QLabel(this)),
      list_(new OccurrenceListView(rows(), {needs_.source.defaults, needs_.makeWaypointButton, needs_.openWiki, {}},
                                   this)) {
    EmptyListActions actions = needs_.emptyActions;
    actions.clearSearch = [this] {
        search_->clear();
        search_->setFocus(Qt::OtherFocusReason);
    };
    for (std::function<void()>* const loads : {&actions.tryAgain, &actions.showWithoutProgress})
        *loads = [this, load = *loads] {
            load();
            leadToWatch();
        };
    empty_ = new EmptyListView(std::move(actions), this);

    search_->setLeadingImage(QStringLiteral("search"));
    search_->setClearable(true);
    search_->setAccessibleName(QStringLiteral("Search the timers"));
    count_->setFont(sansFont(13));
    QPalette colours = count_->palette();
    colours.setColor(QPalette::WindowText, palette::sand);
    count_->setPalette(colours);
    list_->setTabPredecessor(search_);

    auto* const top = new QHBoxLayout;
    top->setContentsMargins(6, 0, 18, 0);
    top->setSpacing(12);
    top->addWidget(search_, 1);
    top->addWidget(count_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 4, 0, 0);
    column->setSpacing(8);
    column->addLayout(top);
    column->addWidget(list_, 1);
    column->addWidget(empty_, 1);
    empty_->hide();

    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (occurrences_.search(text.toStdString())) refresh();
    });
    tick_.setInterval(std::chrono::seconds(1));
    connect(&tick_, &QTimer::timeout, this, [this] { refresh(); });
    data_ = needs_.source.observe([this] { refresh(); });
    settings_ = needs_.source.defaults.observe([this](const std::string& key) {
        if (key == settings::watching || key == settings::timerWindowDuration || key == settings::apiKey) refresh();
    });
}

void TimersView::refresh() {
    if (!isVisible()) return;
    needs_.source.followZone();
    now_ = currentMinute(needs_.source.clock, needs_.source.clock.now());
    const double minutes = windowMinutes(needs_.source.defaults, WindowKind::shown);
    watched_ = readWatchedNames(needs_.source.defaults);
    readProgress();
    occurrences_.update(needs_.source.timeline(), now_, minutes);
    const auto reason = occurrences_.empty(needs_.state());
    if (reason) {
        showEmpty(*reason, minutes);
    } else {
        empty_->hide();
        list_->show();
        showCount(minutes);
    }
    list_->refresh();
    if (leading_ && reason != EmptyReason::loading) arrive();
}

void TimersView::leadToWatch() {
    leading_ = true;
    search_->clear();
    // Here while the events are on their way.
    search_->setFocus(Qt::TabFocusReason);
    refresh();
}

void TimersView::arrive() {
    leading_ = false;
    // A player who has gone on meanwhile is not called back.
    if (window()->focusWidget() != search_ || !search_->text().isEmpty()) return;
    if (list_->isHidden())
        empty_->focusAction();
    else
        list_->focusFirstWatch();
}

void TimersView::readProgress() {
    auto progress = needs_.progress();
    if (progress == progressSource_) return;
    progressSource_ = std::move(progress);
    progress_ = progressSource_ ? progressById(*progressSource_) : ProgressById();
}

void TimersView::showCount(double windowMinutes) {
    QString text;
    if (occurrences_.gathering() > 0)
        text = QString::number(occurrences_.gathering()) + QStringLiteral(" gathering · ");
    text += eventsText(occurrences_.size());
    if (occurrences_.size() < occurrences_.inWindow())
        text += QStringLiteral(" of ") + QString::number(occurrences_.inWindow());
    text += QStringLiteral(" in the next ") + QString::fromStdString(windowText(windowMinutes));
    if (const std::string aged = needs_.aged ? needs_.aged() : std::string(); !aged.empty())
        text += QStringLiteral(" · ") + QString::fromStdString(aged);
    if (text != count_->text()) count_->setText(text);
    count_->show();
}

void TimersView::showEmpty(EmptyReason reason, double windowMinutes) {
    empty_->say(emptyWords(reason, "timers", windowMinutes));
    count_->hide();
    list_->hide();
    empty_->show();
}

OccurrenceListView::Rows TimersView::rows() {
    return {
        [this] { return occurrences_.size(); },
        [this](std::size_t place) -> const TimelineEvent& { return occurrences_.at(place); },
        [this](std::size_t place) {
            const TimelineEvent& occurrence = occurrences_.at(place);
            return occurrenceRow(occurrence, occurrences_.phase(place), now_,
                                 isWatched(watched_, occurrence.event().name));
        },
        [this](const Event& event) { return achievementBlock(event, progress_, needs_.names, needs_.progressKnown()); },
        [this](const Event& event) { needs_.names.need(achievementIds(event)); },
        [this](double id) { return occurrences_.isAhead(id); }};
}

void TimersView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
    tick_.start();
}

void TimersView::hideEvent(QHideEvent* event) {
    tick_.stop();
    QWidget::hideEvent(event);
}

}  // namespace vantor

#include "timers/view/TimerSettingsView.h"

#include <QtCore/QEvent>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <string_view>
#include <utility>

#include "data/SettingKeys.h"
#include "timers/TimerFilters.h"
#include "ui/GW2Button.h"
#include "ui/GW2Slider.h"
#include "ui/GW2Toggle.h"
#include "ui/SectionTitle.h"
#include "ui/TextBlock.h"
#include "ui/VerticalScroller.h"

namespace vantor {

namespace {

constexpr std::chrono::seconds updatedStays{4};

struct Filter {
    const char* text;
    std::string_view key;
    bool TimerFilters::* byDefault;
};

constexpr Filter filters[] = {
    {"is timer (Day/Night cycle, etc)", settings::timerIsTimer, &TimerFilters::isTimer},
    {"is event", settings::timerIsEvent, &TimerFilters::isEvent},
    {"has guaranteed rewards", settings::timerHasGuaranteedItems, &TimerFilters::hasGuaranteedItems},
    {"can drop valuable items", settings::timerDropsItems, &TimerFilters::dropsItems},
    {"has associated achievements", settings::timerHasAchievements, &TimerFilters::hasAchievements},
    {"drops collections items", settings::timerDropsCollectionsItems, &TimerFilters::dropsCollectionsItems},
    {"is temporary special event", settings::timerIsSpecialEvent, &TimerFilters::isSpecialEvent},
};

GW2Slider* windowSlider(Defaults& defaults, std::string_view key, const QString& name, int longest, const QString& unit,
                        QWidget* parent) {
    auto* const slider =
        new GW2Slider(name, 1, longest, 1, QStringLiteral("1") + unit, QString::number(longest) + unit, parent);
    slider->setValueText([unit](double value) { return QString::number(value) + unit; });
    slider->bind(defaults, key, 3);
    return slider;
}

}  // namespace

TimerSettingsView::TimerSettingsView(Defaults& defaults, std::function<void()> reloadEvents, QWidget* parent,
                                     const More& more)
    : QWidget(parent), updated_(new TextBlock(TextRole::success, QStringLiteral("Timers updated!"), this)) {
    auto* const page = new QWidget;
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(8, 4, 16, 16);
    column->setSpacing(8);

    column->addWidget(new SectionTitle(QStringLiteral("Show always if"), page));
    for (const Filter& filter : filters) {
        auto* const toggle = new GW2Toggle(QLatin1StringView(filter.text), page);
        toggle->bind(defaults, filter.key, TimerFilters().*filter.byDefault);
        column->addWidget(toggle);
    }
    if (more.belowFilters) column->addWidget(more.belowFilters(page));
    column->addSpacing(12);
    const auto shown = QStringLiteral("Shown events - time window");
    column->addWidget(new SectionTitle(shown, page));
    column->addWidget(windowSlider(defaults, settings::timerWindowDuration, shown, 6, QStringLiteral("h"), page));
    column->addSpacing(12);
    const auto watched = QStringLiteral("Next watched event - time window");
    column->addWidget(new SectionTitle(watched, page));
    column->addWidget(
        windowSlider(defaults, settings::timerWatchedWindowDuration, watched, 10, QStringLiteral("m"), page));
    column->addSpacing(16);

    auto* const reload = new GW2Button(QStringLiteral("Reload events"), page);
    auto* const row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(reload);
    row->addWidget(updated_, 1);
    column->addLayout(row);
    if (more.atEnd) {
        column->addSpacing(16);
        column->addWidget(more.atEnd(page));
    }
    column->addStretch(1);

    for (auto* const slider : page->findChildren<QAbstractSlider*>()) slider->installEventFilter(this);
    auto* const scroller = new VerticalScroller(this);
    scroller->setContent(page);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(scroller);

    // It keeps its room, so that nothing jumps when it comes and goes.
    QSizePolicy policy = updated_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    updated_->setSizePolicy(policy);
    updated_->hide();
    updatedGoes_.setSingleShot(true);
    updatedGoes_.setInterval(updatedStays);
    connect(&updatedGoes_, &QTimer::timeout, updated_, [this] { updated_->hide(); });
    connect(reload, &QAbstractButton::clicked, this, [this, reloadEvents = std::move(reloadEvents)] {
        reloadEvents();
        updated_->show();
        updatedGoes_.start();
    });
}

// The wheel moves the page, also where a slider comes under the pointer on its way.
bool TimerSettingsView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel) return QWidget::eventFilter(watched, event);
    event->ignore();
    return true;
}

}  // namespace vantor

#include "timers/view/TimerSettingsView.h"

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

namespace vantor {

namespace {

constexpr std::chrono::seconds updatedStays{4};

struct Filter {
    const char* text;
    std::string_view key;
    bool TimerFilters::*byDefault;
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

TimerSettingsView::TimerSettingsView(Defaults& defaults, std::function<void()> reloadEvents, QWidget* parent)
    : QWidget(parent), updated_(new TextBlock(TextRole::success, QStringLiteral("Timers updated!"), this)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);

    column->addWidget(new SectionTitle(QStringLiteral("Show always if"), this));
    for (const Filter& filter : filters) {
        auto* const toggle = new GW2Toggle(QLatin1StringView(filter.text), this);
        toggle->bind(defaults, filter.key, TimerFilters().*filter.byDefault);
        column->addWidget(toggle);
    }
    column->addSpacing(12);
    const auto shown = QStringLiteral("Shown events - time window");
    column->addWidget(new SectionTitle(shown, this));
    column->addWidget(windowSlider(defaults, settings::timerWindowDuration, shown, 6, QStringLiteral("h"), this));
    column->addSpacing(12);
    const auto watched = QStringLiteral("Next watched event - time window");
    column->addWidget(new SectionTitle(watched, this));
    column->addWidget(
        windowSlider(defaults, settings::timerWatchedWindowDuration, watched, 10, QStringLiteral("m"), this));
    column->addSpacing(16);

    auto* const reload = new GW2Button(QStringLiteral("Reload events"), this);
    auto* const row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(reload);
    row->addWidget(updated_, 1);
    column->addLayout(row);
    column->addStretch(1);

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

}  // namespace vantor

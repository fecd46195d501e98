#include "app/view/SystemPowersView.h"

#include <QtCore/QMetaObject>
#include <QtWidgets/QGridLayout>
#include <algorithm>
#include <chrono>
#include <utility>

#include "ui/GW2Button.h"
#include "ui/TextBlock.h"

namespace vantor {

namespace {

constexpr int nameWidth = 170;
constexpr std::chrono::seconds betweenLooks{1};

bool canBeAllowed(const SystemPower& power) { return !power.have && power.ask; }

QString summaryOf(const std::vector<SystemPower>& powers) {
    const auto missing = std::count_if(powers.begin(), powers.end(), [](const auto& power) { return !power.have; });
    if (missing == 0) return QStringLiteral("Everything is here.");
    if (missing == 1) return QStringLiteral("One thing is missing; the rest goes on working without it.");
    return QStringLiteral("%1 things are missing; the rest goes on working without them.").arg(missing);
}

}  // namespace

SystemPowersView::SystemPowersView(Examine examine, QWidget* parent)
    : QWidget(parent), examine_(std::move(examine)), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins({});
    QObject::connect(&again_, &QTimer::timeout, this, [this] { refresh(); });
}

void SystemPowersView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // The machine takes its time to answer: the panel is drawn first.
    QMetaObject::invokeMethod(this, [this] { refresh(); }, Qt::QueuedConnection);
}

void SystemPowersView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    again_.stop();
}

void SystemPowersView::refresh() {
    auto powers = examine_();
    if (isVisible() && std::ranges::any_of(powers, canBeAllowed))
        again_.start(betweenLooks);
    else
        again_.stop();
    if (list_ && powers == shown_) return;
    shown_ = std::move(powers);
    // What is missing comes first.
    auto powersByNeed = shown_;
    std::stable_partition(powersByNeed.begin(), powersByNeed.end(), [](const auto& power) { return !power.have; });
    delete list_;
    list_ = new QWidget(this);
    auto* const grid = new QGridLayout(list_);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(6);
    grid->setColumnMinimumWidth(0, nameWidth);
    grid->setColumnStretch(1, 1);
    grid->addWidget(new TextBlock(TextRole::second, summaryOf(shown_), list_), 0, 0, 1, 2);
    int row = 1;
    for (const SystemPower& power : powersByNeed) {
        auto* const what =
            new TextBlock(power.have ? TextRole::second : TextRole::body, QString::fromStdString(power.what), list_);
        const QString sentence = QString::fromStdString(power.sentence);
        auto* const found = new TextBlock(power.have ? TextRole::hint : TextRole::error, sentence, list_);
        grid->addWidget(what, row, 0, Qt::AlignTop);
        grid->addWidget(found, row, 1);
        if (canBeAllowed(power)) {
            auto* const allow = new GW2Button(QStringLiteral("Allow\u2026"), list_);
            allow->setAccessibleName(QStringLiteral("Allow: ") + QString::fromStdString(power.what));
            QObject::connect(allow, &QAbstractButton::clicked, this, [ask = power.ask] { ask(); });
            grid->addWidget(allow, row, 2, Qt::AlignTop);
        }
        ++row;
    }
    column_->addWidget(list_);
    list_->show();
}

}  // namespace vantor

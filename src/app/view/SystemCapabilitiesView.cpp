#include "app/view/SystemCapabilitiesView.h"

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

bool canBeAllowed(const SystemCapability& capability) { return !capability.have && capability.ask; }

QString summaryOf(const std::vector<SystemCapability>& capabilities) {
    const auto missing = std::count_if(capabilities.begin(), capabilities.end(),
                                       [](const auto& capability) { return !capability.have; });
    if (missing == 0) return QStringLiteral("Everything is here.");
    if (missing == 1) return QStringLiteral("One thing is missing; the rest goes on working without it.");
    return QStringLiteral("%1 things are missing; the rest goes on working without them.").arg(missing);
}

}  // namespace

SystemCapabilitiesView::SystemCapabilitiesView(Examine examine, QWidget* parent)
    : QWidget(parent), examine_(std::move(examine)), column_(new QVBoxLayout(this)) {
    column_->setContentsMargins({});
    QObject::connect(&again_, &QTimer::timeout, this, [this] { refresh(); });
}

void SystemCapabilitiesView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // The machine takes its time to answer: the panel is drawn first.
    QMetaObject::invokeMethod(this, [this] { refresh(); }, Qt::QueuedConnection);
}

void SystemCapabilitiesView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    again_.stop();
}

void SystemCapabilitiesView::refresh() {
    auto capabilities = examine_();
    if (isVisible() && std::ranges::any_of(capabilities, canBeAllowed))
        again_.start(betweenLooks);
    else
        again_.stop();
    if (list_ && capabilities == shown_) return;
    shown_ = std::move(capabilities);
    // What is missing comes first.
    auto capabilitiesByNeed = shown_;
    std::stable_partition(capabilitiesByNeed.begin(), capabilitiesByNeed.end(),
                          [](const auto& capability) { return !capability.have; });
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
    for (const SystemCapability& capability : capabilitiesByNeed) {
        auto* const what = new TextBlock(capability.have ? TextRole::second : TextRole::body,
                                         QString::fromStdString(capability.what), list_);
        const QString sentence = QString::fromStdString(capability.sentence);
        auto* const found = new TextBlock(capability.have ? TextRole::hint : TextRole::error, sentence, list_);
        grid->addWidget(what, row, 0, Qt::AlignTop);
        grid->addWidget(found, row, 1);
        if (canBeAllowed(capability)) {
            auto* const allow = new GW2Button(QStringLiteral("Allow\u2026"), list_);
            allow->setAccessibleName(QStringLiteral("Allow: ") + QString::fromStdString(capability.what));
            QObject::connect(allow, &QAbstractButton::clicked, this, [ask = capability.ask] { ask(); });
            grid->addWidget(allow, row, 2, Qt::AlignTop);
        }
        ++row;
    }
    column_->addWidget(list_);
    list_->show();
}

}  // namespace vantor

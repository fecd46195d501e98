#include "app/view/TabRow.h"

#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>

#include "ui/Palette.h"
#include "ui/TabKeys.h"

namespace vantor {

namespace {

QString textOf(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

TabRow::TabRow(Tabs& tabs, QWidget* parent) : QWidget(parent), tabs_(tabs) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Tabs"));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    for (std::size_t position = 0; position < tabEntries.size(); ++position) {
        const TabEntry& entry = tabEntries[position];
        auto* const element = new TabElement(textOf(entry.text), textOf(entry.image), this);
        connect(element, &QAbstractButton::clicked, this, [this, position] { tabs_.select(position); });
        row->addWidget(element);
        elements_[position] = element;
    }
    row->addStretch(1);
    selection_ = tabs_.changed.observe([this] { showSelection(); });
    showSelection();
}

void TabRow::showSelection() { elements_[shownTab(tabs_.selected())]->setChecked(true); }

void TabRow::setBadge(std::size_t position, const QString& text) { elements_.at(position)->setBadge(text); }

void TabRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), palette::line);
}

void TabRow::keyPressEvent(QKeyEvent* event) {
    const int count = static_cast<int>(elements_.size());
    const auto next = nextTab(*event, Qt::Horizontal, static_cast<int>(shownTab(tabs_.selected())), count);
    if (!next) return QWidget::keyPressEvent(event);
    tabs_.select(static_cast<std::size_t>(*next));
    elements_[static_cast<std::size_t>(*next)]->setFocus(Qt::TabFocusReason);
}

}  // namespace vantor

#include "app/view/TabRow.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>

#include "app/view/TabButton.h"
#include "ui/Palette.h"

namespace vantor {

TabRow::TabRow(Tabs& tabs, QWidget* parent) : QWidget(parent), tabs_(tabs) {
    setFixedHeight(42);
    setAccessibleName(QStringLiteral("Tabs"));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    for (std::size_t position = 0; position < tabEntries.size(); ++position) {
        auto* const button = new TabButton(tabEntries[position], this);
        connect(button, &QAbstractButton::clicked, this, [this, position] { tabs_.select(position); });
        row->addWidget(button);
        buttons_[position] = button;
    }
    row->addStretch(1);
    selection_ = tabs_.changed.observe([this] { showSelection(); });
    showSelection();
}

void TabRow::showSelection() { buttons_[shownTab(tabs_.selected())]->setChecked(true); }

void TabRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), palette::line);
}

void TabRow::keyPressEvent(QKeyEvent* event) {
    const std::size_t shown = shownTab(tabs_.selected());
    std::size_t next = shown;
    if (event->key() == Qt::Key_Right && shown + 1 < tabEntries.size()) ++next;
    if (event->key() == Qt::Key_Left && shown > 0) --next;
    if (next == shown) return QWidget::keyPressEvent(event);
    tabs_.select(next);
    buttons_[next]->setFocus(Qt::TabFocusReason);
}

}  // namespace vantor

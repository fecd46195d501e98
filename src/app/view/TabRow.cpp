#include "app/view/TabRow.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <numeric>

#include "ui/Palette.h"
#include "ui/Tabber.h"

namespace vantor {

namespace {

QString textOf(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

constexpr int gap = 2;
constexpr int comfort = 20;  // around a tab's content, where there is room

}  // namespace

TabRow::TabRow(Tabs& tabs, QWidget* parent) : QWidget(parent), tabs_(tabs), mark_(new TabMark(this)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("Tabs"));
    for (std::size_t position = 0; position < tabEntries.size(); ++position) {
        const TabEntry& entry = tabEntries[position];
        auto* const element = new TabElement(textOf(entry.text), textOf(entry.image), this);
        connect(element, &QAbstractButton::clicked, this, [this, position] { tabs_.select(position); });
        element->setOwnMark(false);
        elements_[position] = element;
    }
    selection_ = tabs_.changed.observe([this] { showSelection(); });
    showSelection();
}

void TabRow::showSelection() {
    TabElement* const chosen = elements_[shownTab(tabs_.selected())];
    chosen->setChecked(true);
    fit();
    mark_->moveBelow(chosen);
}

void TabRow::setBadge(std::size_t position, const QString& text) {
    elements_.at(position)->setBadge(text);
    fit();
}

int TabRow::sum(int (TabElement::*of)() const) const {
    return std::accumulate(elements_.begin(), elements_.end(), gap * static_cast<int>(elements_.size() - 1),
                           [of](int before, const TabElement* element) { return before + (element->*of)(); });
}

// Laid out by hand: the toolkit's row cuts the widest tabs first, down into their texts.
void TabRow::fit() {
    const bool compact = sum(&TabElement::fullWidth) > width();
    for (TabElement* const element : elements_) element->setCompact(compact && !element->isChecked());
    const int count = static_cast<int>(elements_.size());
    const int spare = std::clamp((width() - sum(&TabElement::leastWidth)) / count, 0, comfort);
    int left = 0;
    for (TabElement* const element : elements_) {
        const int wide = element->leastWidth() + spare;
        element->setGeometry(left, 0, wide, height());
        left += wide + gap;
    }
}

QSize TabRow::sizeHint() const {
    return {sum(&TabElement::fullWidth) + comfort * static_cast<int>(elements_.size()),
            elements_.front()->sizeHint().height()};
}

QSize TabRow::minimumSizeHint() const {
    const int height = sizeHint().height();
    return {height * static_cast<int>(elements_.size()), height};
}

void TabRow::resizeEvent(QResizeEvent*) { fit(); }

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

#include "ui/Tabber.h"

#include <QtGui/QPainter>
#include <utility>

#include "ui/Palette.h"

namespace vantor {

namespace {

// The tabs, with a hairline towards their pages.
class Strip final : public QWidget {
public:
    Strip(bool column, QWidget* parent) : QWidget(parent), column_(column) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(column_ ? QRect(width() - 1, 0, 1, height()) : QRect(0, height() - 1, width(), 1),
                         palette::line);
    }

private:
    bool column_;
};

}  // namespace

Tabber::Tabber(Qt::Orientation tabs, QWidget* parent)
    : QWidget(parent),
      orientation_(tabs),
      strip_(new Strip(tabs == Qt::Vertical, this)),
      stripLayout_(new QBoxLayout(tabs == Qt::Vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, strip_)),
      pages_(new QStackedWidget(this)) {
    stripLayout_->setContentsMargins(0, 0, 0, 0);
    stripLayout_->setSpacing(tabs == Qt::Vertical ? 2 : 4);
    stripLayout_->addStretch(1);
    auto* const whole = new QBoxLayout(tabs == Qt::Vertical ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->setSpacing(tabs == Qt::Vertical ? 16 : 10);
    whole->addWidget(strip_);
    whole->addWidget(pages_, 1);
    if (tabs == Qt::Horizontal) mark_ = new TabMark(strip_);
}

int Tabber::addTab(const QString& text, const QString& image, MakePage makePage) {
    const int position = count();
    auto* const element = new TabElement(text, image, strip_);
    element->setColumn(orientation_ == Qt::Vertical);
    element->setOwnMark(mark_ == nullptr);
    stripLayout_->insertWidget(position, element);
    QObject::connect(element, &QAbstractButton::clicked, this, [this, position] { select(position); });
    tabs_.push_back({element, std::move(makePage)});
    if (position == 0) select(0);
    return position;
}

void Tabber::select(int position) {
    Tab& tab = tabs_.at(static_cast<std::size_t>(position));
    tab.element->setChecked(true);
    if (mark_) mark_->moveBelow(tab.element);
    if (!tab.page) {
        tab.page = tab.makePage(pages_);
        pages_->addWidget(tab.page);
    }
    pages_->setCurrentWidget(tab.page);
    if (std::exchange(selected_, position) != position && handler_) handler_(position);
}

void Tabber::keyPressEvent(QKeyEvent* event) {
    const auto next =
        strip_->isAncestorOf(focusWidget()) ? nextTab(*event, orientation_, selected_, count()) : std::nullopt;
    if (!next) return QWidget::keyPressEvent(event);
    select(*next);
    tab(*next).setFocus(Qt::TabFocusReason);
}

}  // namespace vantor

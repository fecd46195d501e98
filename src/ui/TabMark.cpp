#include "ui/TabMark.h"

#include <QtCore/QEvent>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <cmath>

#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int thickness = 3;

int between(int from, int to, double at) { return static_cast<int>(std::lround(from + (to - from) * at)); }

}  // namespace

TabMark::TabMark(QWidget* row) : QWidget(row), way_(this, springs::quick, [this](double) { place(); }) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TabMark::moveBelow(QWidget* tab) {
    if (tab == tab_) return;
    if (tab_) tab_->removeEventFilter(this);
    const bool glides = tab_ && isVisible();
    from_ = geometry();
    tab_ = tab;
    tab_->installEventFilter(this);
    way_.jumpTo(glides ? 0 : 1);
    if (glides) way_.moveTo(1);
    place();
    raise();
}

void TabMark::place() {
    if (!tab_) return;
    const QRect to(tab_->x(), tab_->geometry().bottom() + 1 - thickness, tab_->width(), thickness);
    setGeometry(between(from_.x(), to.x(), way_.value()), to.y(), between(from_.width(), to.width(), way_.value()),
                thickness);
}

void TabMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QLinearGradient line(0, 0, width(), 0);
    line.setColorAt(0, palette::withAlpha(palette::red, 0));
    line.setColorAt(0.25, palette::red);
    line.setColorAt(0.75, palette::red);
    line.setColorAt(1, palette::withAlpha(palette::red, 0));
    painter.fillRect(rect(), line);
}

bool TabMark::eventFilter(QObject* watched, QEvent* event) {
    if (watched == tab_ && (event->type() == QEvent::Move || event->type() == QEvent::Resize)) place();
    return QWidget::eventFilter(watched, event);
}

}  // namespace vantor

#include "ui/SectionTitle.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <algorithm>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int fontSize = 19;

}  // namespace

SectionTitle::SectionTitle(const QString& text, QWidget* parent) : QWidget(parent), text_(text) {
    describeControls();
    setAccessibleName(text);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SectionTitle::sizeHint() const {
    const QFontMetrics metrics(serifFont(fontSize));
    return {metrics.horizontalAdvance(text_) + 8, metrics.height() + withText(10)};
}

QSize SectionTitle::minimumSizeHint() const {
    return {std::min(sizeHint().width(), withText(120)), sizeHint().height()};
}

void SectionTitle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(serifFont(fontSize));
    painter.setPen(palette::gold);
    painter.drawText(rect().adjusted(0, 0, 0, -withText(4)), Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(painter.font()).elidedText(text_, Qt::ElideRight, width()));
    QLinearGradient rule(0, 0, width(), 0);
    rule.setColorAt(0, palette::withAlpha(palette::line, 0.5));
    rule.setColorAt(1, palette::withAlpha(palette::line, 0));
    painter.fillRect(QRect(0, height() - 2, width(), 1), rule);
}

}  // namespace vantor

#include "ui/QuietText.h"

#include <QtGui/QPainter>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

QuietText::QuietText(QWidget* parent) : QWidget(parent) {}

void QuietText::setText(const QString& title, const QString& sentence) {
    if (title == title_ && sentence == sentence_) return;
    title_ = title;
    sentence_ = sentence;
    setAccessibleName(title.isEmpty() ? sentence : title + QStringLiteral(". ") + sentence);
    update();
}

void QuietText::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int middle = height() * 2 / 5;
    painter.setFont(serifFont(27));
    painter.setPen(palette::gold);
    painter.drawText(QRect(32, middle - withText(44), width() - 64, withText(40)), Qt::AlignHCenter | Qt::AlignBottom, title_);
    painter.setFont(sansFont(14));
    painter.setPen(palette::sand);
    painter.drawText(QRect(32, middle + withText(8), width() - 64, height() - middle - withText(8)), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                     sentence_);
}

}  // namespace vantor

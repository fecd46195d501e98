#include "timers/view/TimerRowPainter.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QLinearGradient>

#include "timers/view/TimerRowModel.h"
#include "ui/FigureSubstitution.h"
#include "ui/Fonts.h"
#include "ui/States.h"

namespace vantor {

namespace {

constexpr int rowHeight = 58;
constexpr int timeRight = 102;  // the times end here, the texts begin a little further
constexpr int textLeft = 116;

void paintGround(QPainter& painter, const QRect& frame, const ShownRow& row, QStyle::State state) {
    if (row.gathering) {
        QLinearGradient glow(frame.topLeft(), frame.topRight());
        glow.setColorAt(0, palette::withAlpha(palette::red, 0.42));
        glow.setColorAt(0.55, palette::withAlpha(palette::red, 0.16));
        glow.setColorAt(1, palette::withAlpha(palette::red, 0.05));
        painter.fillRect(frame, glow);
    }
    if (state & (QStyle::State_MouseOver | QStyle::State_Selected)) paintHover(painter, frame);
    painter.fillRect(QRect(frame.left(), frame.bottom(), frame.width(), 1), palette::withAlpha(palette::gold, 0.10));
    painter.fillRect(QRect(frame.left(), frame.top() + 8, 4, frame.height() - 16), row.accent);
}

}  // namespace

TimerRowPainter::TimerRowPainter(const TimerRowModel& model, QObject* parent)
    : QStyledItemDelegate(parent), model_(model) {}

void TimerRowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const ShownRow& row = model_.row(index.row());
    const QRect frame = option.rect;
    painter->save();
    paintGround(*painter, frame, row, option.state);

    const bool oneLine = row.getThereBy.isEmpty();
    const QRect times(frame.left() + 8, frame.top(), timeRight - 8, frame.height());
    painter->setPen(palette::gold);
    drawFigures(*painter, serifFont(21), QPointF(frame.left() + timeRight, frame.top() + 27), row.time);
    painter->setFont(sansFont(12));
    painter->setPen(row.gathering ? palette::brightAmber : palette::sand);
    painter->drawText(times.adjusted(0, 31, 0, -6), Qt::AlignRight | Qt::AlignVCenter, row.remaining);

    const int right = frame.right() - 12;
    const int top = frame.top() + (oneLine ? 19 : 8);
    const QFont nameFont = sansFont(15, true);
    const QFontMetrics nameMetrics(nameFont);
    const QString name = nameMetrics.elidedText(row.name, Qt::ElideRight, right - frame.left() - textLeft);
    painter->setFont(nameFont);
    painter->setPen(palette::warmWhite);
    painter->drawText(QRect(frame.left() + textLeft, top, right - frame.left() - textLeft, 20), Qt::AlignVCenter, name);

    const int placeLeft = frame.left() + textLeft + nameMetrics.horizontalAdvance(name) + 12;
    if (placeLeft < right) {
        painter->setFont(sansFont(13));
        painter->setPen(palette::sand);
        painter->drawText(QRect(placeLeft, top, right - placeLeft, 20), Qt::AlignVCenter,
                          painter->fontMetrics().elidedText(row.place, Qt::ElideRight, right - placeLeft));
    }
    if (!oneLine) {
        painter->setFont(sansFont(13));
        painter->setPen(palette::amber);
        painter->drawText(QRect(frame.left() + textLeft, top + 21, right - frame.left() - textLeft, 20),
                          Qt::AlignVCenter, row.getThereBy);
    }
    if (option.state & QStyle::State_HasFocus) paintFocusRing(*painter, QRectF(frame).adjusted(2, 2, -2, -3));
    painter->restore();
}

QSize TimerRowPainter::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const { return {0, rowHeight}; }

}  // namespace vantor

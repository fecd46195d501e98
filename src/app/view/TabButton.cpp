#include "app/view/TabButton.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QLinearGradient>

#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/States.h"

namespace vantor {

namespace {

constexpr int rowHeight = 42;
constexpr int imageSize = 20;
constexpr int imageGap = 7;
constexpr int fontSize = 14;

QString textOf(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

TabButton::TabButton(const TabEntry& entry, QWidget* parent) : QAbstractButton(parent), image_(textOf(entry.image)) {
    setText(textOf(entry.text));
    setAccessibleName(text());
    setCheckable(true);
    setAutoExclusive(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

QSize TabButton::sizeHint() const {
    return {QFontMetrics(sansFont(fontSize)).horizontalAdvance(text()) + imageSize + imageGap + 30, rowHeight};
}

QSize TabButton::minimumSizeHint() const { return {sizeHint().width() - 22, rowHeight}; }

void TabButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool chosen = isChecked();
    if (underMouse() && !chosen) paintHover(painter, rect());
    const int content = QFontMetrics(sansFont(fontSize)).horizontalAdvance(text()) + imageSize + imageGap;
    const int left = (width() - content) / 2;
    const int down = isDown() ? 1 : 0;
    const QString name = chosen ? image_ + QStringLiteral(".selected") : image_;
    painter.drawPixmap(left, (height() - imageSize) / 2 + down,
                       image(name, {imageSize, imageSize}, devicePixelRatioF()));
    painter.setFont(sansFont(fontSize));
    painter.setPen(chosen ? palette::gold : underMouse() ? palette::warmWhite : palette::sand.lighter(112));
    painter.drawText(rect().adjusted(left + imageSize + imageGap, down, 0, down), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
    if (chosen) {
        QLinearGradient line(0, 0, width(), 0);
        line.setColorAt(0, palette::withAlpha(palette::red, 0));
        line.setColorAt(0.25, palette::red);
        line.setColorAt(0.75, palette::red);
        line.setColorAt(1, palette::withAlpha(palette::red, 0));
        painter.fillRect(QRect(0, height() - 3, width(), 3), line);
    }
    if (hasFocus()) paintFocusRing(painter, QRectF(rect()).adjusted(4, 6, -4, -7));
}

}  // namespace vantor

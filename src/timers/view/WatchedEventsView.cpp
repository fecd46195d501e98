#include "timers/view/WatchedEventsView.h"

#include <QtCore/QStringList>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/FigureSubstitution.h"
#include "ui/Fonts.h"
#include "ui/InkPanel.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

const InkPanelStyle panelStyle{.opacity = 0.88, .margin = 8, .tear = 4, .seed = 11};

int panelWidth() { return withText(264); }
int timeWidth() { return withText(46); }
int lineHeight() { return withText(34); }  // of a name on one line

constexpr int edge = 20;  // the shadow's margin, the torn edge and the room to the texts
constexpr int gap = 10;

}  // namespace

WatchedEventsView::WatchedEventsView(WatchedFeed& feed, Fit fit, QWidget* parent)
    : QWidget(parent), feed_(feed), fit_(std::move(fit)) {
    setAccessibleName(QStringLiteral("Watched events"));
}

QSize WatchedEventsView::sizeHint() const {
    if (lines_.empty()) return {0, 0};
    return {panelWidth(), lines_.back().frame.bottom() + 1 + edge - 4};
}

void WatchedEventsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    rows_ = feed_.observe([this] { follow(); });
    follow();
}

void WatchedEventsView::hideEvent(QHideEvent* event) {
    rows_.reset();
    QWidget::hideEvent(event);
}

void WatchedEventsView::follow() {
    lines_.clear();
    QStringList spoken;
    const QFontMetrics nameMetrics(sansFont(14));
    const QFontMetrics remainingMetrics(sansFont(13));
    int top = edge - 4;
    for (const OccurrenceRow& row : feed_.rows()) {
        Line line{QString::fromStdString(row.time),
                  QString::fromStdString(row.name),
                  QString::fromStdString(row.remaining),
                  row.phase == RowPhase::gathering,
                  {},
                  {}};
        const int left = edge + timeWidth() + gap;
        const int room = panelWidth() - edge - remainingMetrics.horizontalAdvance(line.remaining) - gap - left;
        // Two lines at most; a longer name is cut.
        const QRect needed = nameMetrics.boundingRect(QRect(0, 0, room, 1000), Qt::TextWordWrap, line.name);
        const int lines = needed.height() > nameMetrics.lineSpacing() + 2 ? 2 : 1;
        line.frame = QRect(edge, top, panelWidth() - 2 * edge,
                           lines == 2 ? lineHeight() + nameMetrics.lineSpacing() : lineHeight());
        line.nameFrame = QRect(left, top, room, line.frame.height());
        if (lines == 2 && needed.height() > 2 * nameMetrics.lineSpacing() + 2)
            line.name =
                nameMetrics.elidedText(line.name, Qt::ElideRight, 2 * room - nameMetrics.averageCharWidth() * 6);
        top = line.frame.bottom() + 1;
        spoken << QString::fromStdString(row.time + " " + row.name + " " + row.remaining);
        lines_.push_back(std::move(line));
    }
    setAccessibleDescription(spoken.join(QStringLiteral(", ")));
    ground_ = {};
    updateGeometry();
    if (fit_) fit_(sizeHint());
    update();
}

void WatchedEventsView::paintEvent(QPaintEvent*) {
    if (lines_.empty()) return;
    QPainter painter(this);
    if (ground_.isNull()) ground_ = drawInkPanel(size(), devicePixelRatioF(), panelStyle);
    painter.drawPixmap(0, 0, ground_);
    for (const Line& line : lines_) {
        painter.setPen(palette::gold);
        const double baseLine = line.frame.center().y() + withText(7);
        drawFigures(painter, serifFont(20), QPointF(edge + timeWidth(), baseLine), line.time);
        painter.setFont(sansFont(14));
        painter.setPen(palette::warmWhite);
        painter.drawText(line.nameFrame, Qt::AlignVCenter | Qt::TextWordWrap, line.name);
        painter.setFont(sansFont(13));
        painter.setPen(palette::brightAmber);
        painter.drawText(line.frame, Qt::AlignVCenter | Qt::AlignRight, line.remaining);
    }
}

}  // namespace vantor

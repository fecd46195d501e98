#include "timers/view/WatchedEventsView.h"

#include <QtCore/QStringList>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <algorithm>
#include <utility>

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
constexpr int namePixels = 14;
constexpr int remainingPixels = 13;

int below(const QRect& frame) { return frame.bottom() + 1; }

}  // namespace

WatchedEventsView::WatchedEventsView(WatchedFeed& feed, Fit fit, QWidget* parent)
    : QWidget(parent), feed_(feed), fit_(std::move(fit)) {
    setAccessibleName(QStringLiteral("Watched events"));
}

QSize WatchedEventsView::sizeHint() const {
    if (lines_.empty()) return {0, 0};
    return {panelWidth(), below(lines_.back().frame) + edge - 4};
}

void WatchedEventsView::setFollowing(bool following) {
    if (!following) return rows_.reset();
    rows_ = feed_.observe([this] { follow(); });
    follow();
}

WatchedEventsView::Line WatchedEventsView::lineOf(const OccurrenceRow& row, int top) {
    const QFontMetrics names(sansFont(namePixels));
    Line line{QString::fromStdString(row.time),
              QString::fromStdString(row.name),
              QString::fromStdString(row.remaining),
              palette::warmWhite,
              {},
              {}};
    const int left = edge + timeWidth() + gap;
    const int remaining = QFontMetrics(sansFont(remainingPixels)).horizontalAdvance(line.remaining);
    const int room = panelWidth() - edge - remaining - gap - left;
    // Two lines at most; a longer name is cut.
    const QRect needed = names.boundingRect(QRect(0, 0, room, 1000), Qt::TextWordWrap, line.name);
    const bool twoLines = needed.height() > names.lineSpacing() + 2;
    line.frame = QRect(edge, top, panelWidth() - 2 * edge, lineHeight() + (twoLines ? names.lineSpacing() : 0));
    line.nameFrame = QRect(left, top, room, line.frame.height());
    if (needed.height() > 2 * names.lineSpacing() + 2)
        line.name = names.elidedText(line.name, Qt::ElideRight, 2 * room - names.averageCharWidth() * 6);
    return line;
}

void WatchedEventsView::follow() {
    lines_.clear();
    QStringList spoken;
    for (const OccurrenceRow& row : feed_.rows()) {
        lines_.push_back(lineOf(row, lines_.empty() ? edge - 4 : below(lines_.back().frame)));
        spoken << QString::fromStdString(row.time + " " + row.name + " " + row.remaining);
    }
    keepToScreen();
    setAccessibleDescription(spoken.join(QStringLiteral(", ")));
    background_ = {};
    updateGeometry();
    if (fit_) fit_(sizeHint());
    update();
}

// Clicks and wheel belong to the game here, so nothing scrolls: the last ones are counted only.
void WatchedEventsView::keepToScreen() {
    const int room = window()->screen()->availableGeometry().height();
    if (sizeHint().height() <= room) return;
    const std::size_t all = lines_.size();
    while (lines_.size() > 1 && sizeHint().height() + lineHeight() > room) lines_.pop_back();
    const QRect frame(edge, below(lines_.back().frame), panelWidth() - 2 * edge, lineHeight());
    const int left = edge + timeWidth() + gap;
    lines_.push_back({{},
                      QStringLiteral("and %1 more").arg(all - lines_.size()),
                      {},
                      palette::sand,
                      frame,
                      frame.adjusted(left - edge, 0, 0, 0)});
}

void WatchedEventsView::paintEvent(QPaintEvent*) {
    if (lines_.empty()) return;
    QPainter painter(this);
    if (background_.isNull()) background_ = drawInkPanel(size(), devicePixelRatioF(), panelStyle);
    painter.drawPixmap(0, 0, background_);
    for (const Line& line : lines_) {
        painter.setPen(palette::gold);
        const double baseLine = line.frame.center().y() + withText(7);
        drawFigures(painter, serifFont(20), QPointF(edge + timeWidth(), baseLine), line.time);
        painter.setFont(sansFont(namePixels));
        painter.setPen(line.nameColour);
        painter.drawText(line.nameFrame, Qt::AlignVCenter | Qt::TextWordWrap, line.name);
        painter.setFont(sansFont(remainingPixels));
        painter.setPen(palette::brightAmber);
        painter.drawText(line.frame, Qt::AlignVCenter | Qt::AlignRight, line.remaining);
    }
}

}  // namespace vantor

#include "timers/view/TimersTab.h"

#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "timers/VisibleWindow.h"
#include "timers/view/TimerRowPainter.h"
#include "ui/Fonts.h"
#include "ui/Palette.h"
#include "ui/SlimScrollBar.h"

namespace vantor {

namespace {

QString hoursText(double minutes) {
    const double hours = minutes / 60;
    return QString::number(hours, 'g', 4) + QStringLiteral(" h");
}

QString countText(int rows, double minutes) {
    return QString::number(rows) +
           (rows == 1 ? QStringLiteral(" event in the next ") : QStringLiteral(" events in the next ")) +
           hoursText(minutes);
}

void paintInLook(QWidget& widget, const QColor& text) {
    QPalette colours = widget.palette();
    colours.setColor(QPalette::Base, Qt::transparent);
    colours.setColor(QPalette::WindowText, text);
    widget.setPalette(colours);
}

}  // namespace

TimersTab::TimersTab(TimersSource source, QWidget* parent)
    : QWidget(parent),
      source_(std::move(source)),
      list_(new QListView(this)),
      count_(new QLabel(this)),
      words_(new QuietText(this)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    count_->setFont(sansFont(13));
    count_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    count_->setContentsMargins(0, 0, 18, 0);
    count_->setFixedHeight(28);
    paintInLook(*count_, palette::sand);
    column->addWidget(count_);
    column->addWidget(list_, 1);
    column->addWidget(words_, 1);

    list_->setAccessibleName(QStringLiteral("Timers"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setUniformItemSizes(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setVerticalScrollBar(new SlimScrollBar(list_));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setMouseTracking(true);
    list_->viewport()->setAutoFillBackground(false);
    paintInLook(*list_, palette::warmWhite);
    list_->setItemDelegate(new TimerRowPainter(model_, list_));
    list_->setModel(&model_);
    list_->verticalScrollBar()->setSingleStep(29);

    tick_.setInterval(std::chrono::seconds(1));
    connect(&tick_, &QTimer::timeout, this, [this] { refresh(); });
}

void TimersTab::refresh() {
    if (!isVisible()) return;
    source_.beforeRefresh();
    const auto timeline = source_.timeline();
    if (!timeline) return showWords(source_.whyNoTimeline());

    const int now = currentMinute(source_.clock, source_.clock.now());
    const double minutes = windowMinutes(source_.defaults, WindowKind::shown);
    const std::vector<TimelineEvent> visible = visibleWindow(timeline->events, now, minutes);
    model_.setRows(shownRows(visible, now, minutes));
    if (visible.empty())
        return showWords({QStringLiteral("Nothing ahead"),
                          QStringLiteral("No event starts in the next ") + hoursText(minutes) + QStringLiteral(".")});
    words_->hide();
    list_->show();
    count_->show();
    count_->setText(countText(model_.rowCount(), minutes));
}

void TimersTab::showWords(const TimersSource::Words& words) {
    model_.setRows({});
    list_->hide();
    count_->hide();
    words_->setText(words.title, words.sentence);
    words_->show();
}

void TimersTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
    tick_.start();
}

void TimersTab::hideEvent(QHideEvent* event) {
    tick_.stop();
    QWidget::hideEvent(event);
}

}  // namespace vantor

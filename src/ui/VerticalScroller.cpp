#include "ui/VerticalScroller.h"

#include <QtCore/QEvent>
#include <QtGui/QLinearGradient>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionSlider>
#include <algorithm>

#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int fadeDepth = 22;

class CutEdges final : public QWidget {
public:
    CutEdges(const QScrollBar& bar, QWidget* parent) : QWidget(parent), bar_(bar) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const auto fade = [&](int from, int to, const QRect& area) {
            QLinearGradient gradient(0, from, 0, to);
            gradient.setColorAt(0, palette::withAlpha(palette::sheet, 0.92));
            gradient.setColorAt(1, palette::withAlpha(palette::sheet, 0));
            painter.fillRect(area, gradient);
        };
        if (bar_.value() > bar_.minimum()) fade(0, fadeDepth, {0, 0, width(), fadeDepth});
        if (bar_.value() < bar_.maximum())
            fade(height(), height() - fadeDepth, {0, height() - fadeDepth, width(), fadeDepth});
    }

private:
    const QScrollBar& bar_;
};

}  // namespace

SlimScrollBar::SlimScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) { setAttribute(Qt::WA_Hover); }

QSize SlimScrollBar::sizeHint() const { return {12, QScrollBar::sizeHint().height()}; }

void SlimScrollBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect track = rect().adjusted(5, 4, -2, -4);
    painter.fillRect(track, QColor(0, 0, 0, 110));
    const int range = maximum() - minimum();
    if (range <= 0) return;
    const int length = std::max(28, track.height() * pageStep() / (range + pageStep()));
    const int top = track.top() + (track.height() - length) * (value() - minimum()) / range;
    const double strength = isSliderDown() ? 0.75 : underMouse() ? 0.6 : 0.42;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::withAlpha(palette::gold, strength));
    painter.drawRoundedRect(QRect(track.left(), top, track.width(), length), 2, 2);
}

VerticalScroller::VerticalScroller(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new SlimScrollBar(this));
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    QPalette clear = palette();
    clear.setColor(QPalette::Window, QColor(0, 0, 0, 0));
    clear.setColor(QPalette::Base, QColor(0, 0, 0, 0));
    setPalette(clear);
    fades_ = new CutEdges(*verticalScrollBar(), this);
    QObject::connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { fade(); });
    QObject::connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { fade(); });
    viewport()->installEventFilter(this);
}

void VerticalScroller::setContent(QWidget* content) {
    // Else the toolkit gives it no less than its height where it is at its narrowest.
    content->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    setWidget(content);
}

QSize VerticalScroller::sizeHint() const { return widget() ? widget()->sizeHint() : QScrollArea::sizeHint(); }

void VerticalScroller::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    fade();
}

bool VerticalScroller::eventFilter(QObject* watched, QEvent* event) {
    if (watched == viewport() && event->type() == QEvent::Resize) fade();
    return QScrollArea::eventFilter(watched, event);
}

void VerticalScroller::fade() {
    fades_->setGeometry(viewport()->geometry());
    fades_->raise();
    fades_->update();
}

}  // namespace vantor

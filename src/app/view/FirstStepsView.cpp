#include "app/view/FirstStepsView.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/Palette.h"
#include "ui/TextBlock.h"

namespace vantor {

namespace {

constexpr int side = 10;
constexpr int markSize = 18;
constexpr int markGap = 8;

QString textOf(FirstStep step) {
    switch (step) {
        case FirstStep::key:
            return QStringLiteral("Your key");
        case FirstStep::hotkey:
            return QStringLiteral("Your hotkey");
        case FirstStep::watchedEvent:
            break;
    }
    return QStringLiteral("An event to watch");
}

}  // namespace

// A number in a circle, or a tick, and what the step is.
class FirstStepsView::StepButton final : public Pressable {
public:
    StepButton(FirstStep step, int number, QWidget* parent) : Pressable(parent), number_(number) {
        setText(textOf(step));
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        setDone(false);
    }

    void setDone(bool done) {
        done_ = done;
        setAccessibleName(text() + (done ? QStringLiteral(", done") : QStringLiteral(", to do")));
        update();
    }
    [[nodiscard]] QSize sizeHint() const override {
        const QFontMetrics metrics(sansFont(14));
        return {metrics.horizontalAdvance(text()) + withText(markSize) + markGap + 2 * side, metrics.height() + 14};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const ControlState state = Pressable::state();
        const QRect frame = rect().adjusted(3, 3, -3, -3).translated(0, state.pressed ? 1 : 0);
        paintHover(painter, frame, state.glow);
        paintMark(painter, frame);
        painter.setFont(sansFont(14));
        painter.setPen(palette::between(done_ ? palette::sand : palette::warmWhite, palette::gold, state.glow));
        painter.drawText(frame.adjusted(side + withText(markSize) + markGap - 3, 0, 0, 0),
                         Qt::AlignVCenter | Qt::AlignLeft, text());
        if (state.focused) paintFocusRing(painter, frame);
    }

private:
    void paintMark(QPainter& painter, const QRect& frame) const {
        const int mark = withText(markSize);
        const QRect place(frame.left() + side - 3, frame.center().y() - mark / 2 + 1, mark, mark);
        if (done_) {
            painter.drawPixmap(place.topLeft(), image(QStringLiteral("checkmark"), place.size(), devicePixelRatioF()));
            return;
        }
        painter.setPen(QPen(palette::withAlpha(palette::gold, 0.6), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5));
        painter.setFont(sansFont(11));
        painter.setPen(palette::gold);
        painter.drawText(place, Qt::AlignCenter, QString::number(number_));
    }

    int number_;
    bool done_ = false;
};

FirstStepsView::FirstStepsView(Defaults& defaults, const std::function<void(FirstStep)>& lead, QWidget* parent)
    : QWidget(parent), defaults_(defaults) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(10, 3, 10, 3);
    row->setSpacing(6);
    auto* const title = new TextBlock(TextRole::second, QStringLiteral("First steps"), this);
    title->setWordWrap(false);
    row->addWidget(title);
    row->addSpacing(6);
    for (std::size_t place = 0; place < firstSteps.size(); ++place) {
        const FirstStep step = firstSteps[place];
        buttons_[place] = new StepButton(step, static_cast<int>(place) + 1, this);
        row->addWidget(buttons_[place]);
        QObject::connect(buttons_[place], &QAbstractButton::clicked, this, [lead, step] { lead(step); });
    }
    row->addStretch(1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    settings_ = defaults_.observe([this](const std::string& key) {
        if (concernsFirstSteps(key)) follow();
    });
    follow();
}

void FirstStepsView::setWanted(bool wanted) {
    wanted_ = wanted;
    follow();
}

void FirstStepsView::follow() {
    const FirstSteps steps = readFirstSteps(defaults_);
    for (std::size_t place = 0; place < firstSteps.size(); ++place)
        buttons_[place]->setDone(steps.isDone(firstSteps[place]));
    setVisible(wanted_ && !steps.areOver());
}

void FirstStepsView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette::withAlpha(palette::gold, 0.05));
    painter.fillRect(QRect(0, height() - 1, width(), 1), palette::line);
}

}  // namespace vantor

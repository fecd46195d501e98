#include "ui/Collapse.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtWidgets/QLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Images.h"
#include "ui/Palette.h"
#include "ui/Pressable.h"

namespace vantor {

namespace {

constexpr int fontSize = 15;
constexpr int contentGap = 6;  // below the title

int arrowSize() { return withText(16); }
int indent() { return arrowSize() + 12; }

// A button that opens and closes.
class AccessibleTitle final : public AccessibleButton {
public:
    explicit AccessibleTitle(QAbstractButton* title) : AccessibleButton(title, QAccessible::Button) {}
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleButton::state();
        state.expandable = true;
        state.expanded = button().isChecked();
        state.collapsed = !button().isChecked();
        return state;
    }
};

class TitleRow final : public Pressable {
public:
    TitleRow(const QString& title, const Motion& opened, QWidget* parent) : Pressable(parent), opened_(opened) {
        setText(title);
        setCheckable(true);
    }
    [[nodiscard]] QAccessibleInterface* makeAccessible() override { return new AccessibleTitle(this); }
    [[nodiscard]] QSize sizeHint() const override {
        const QFontMetrics metrics(sansFont(fontSize));
        return {metrics.horizontalAdvance(text()) + indent() + 12, metrics.height() + 16};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const ControlState state = Pressable::state();
        const int arrow = arrowSize();
        if (!state.enabled) painter.setOpacity(disabledOpacity);
        paintHover(painter, rect(), state.glow);
        painter.save();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.translate(6 + arrow / 2.0, height() / 2.0);
        painter.rotate(90 * std::clamp(opened_.value(), 0.0, 1.0));
        painter.drawPixmap(QPointF(-arrow / 2.0, -arrow / 2.0),
                           image(QStringLiteral("chevron.right"), {arrow, arrow}, devicePixelRatioF()));
        painter.restore();
        painter.setFont(sansFont(fontSize));
        painter.setPen(palette::between(palette::warmWhite, palette::gold, isChecked() ? 1 : state.glow));
        painter.drawText(rect().adjusted(indent(), 0, -6, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         QFontMetrics(painter.font()).elidedText(text(), Qt::ElideRight, width() - indent() - 6));
        painter.fillRect(QRect(0, height() - 1, width(), 1), palette::withAlpha(palette::line, 0.14));
        if (state.focused) paintFocusRing(painter, QRectF(rect()).adjusted(3, 3, -3, -3));
    }

private:
    const Motion& opened_;
};

}  // namespace

Collapse::Collapse(const QString& title, QWidget* parent)
    : QWidget(parent), clip_(new QWidget(this)), opened_(this, springs::standard, [this](double) { arrange(); }) {
    title_ = new TitleRow(title, opened_, this);
    clip_->hide();
    clip_->installEventFilter(this);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    QObject::connect(title_, &QAbstractButton::clicked, this, [this] { setExpanded(!expanded_); });
}

void Collapse::setTitle(const QString& title) {
    title_->setText(title);
    title_->update();
}

void Collapse::setContent(QWidget* content) {
    delete content_;
    content_ = content;
    content_->setParent(clip_);
    content_->show();
    arrange();
}

void Collapse::setExpanded(bool expanded) {
    title_->setChecked(expanded);
    if (std::exchange(expanded_, expanded) == expanded) return;
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent told(title_, changed);
    QAccessible::updateAccessibility(&told);
    if (isVisible())
        opened_.moveTo(expanded ? 1 : 0);
    else
        opened_.jumpTo(expanded ? 1 : 0);
    arrange();
    if (toggled_) toggled_(expanded);
}

int Collapse::contentHeight(int width) const {
    if (!content_) return 0;
    const QSize wanted = content_->sizeHint();
    return content_->hasHeightForWidth() ? content_->heightForWidth(width)
           : content_->layout() && content_->layout()->hasHeightForWidth()
               ? content_->layout()->totalHeightForWidth(width)
               : wanted.height();
}

int Collapse::heightForWidth(int width) const {
    const double open = std::max(0.0, opened_.value());
    return title_->sizeHint().height() +
           static_cast<int>(std::lround((contentHeight(width - indent()) + contentGap) * open));
}

QSize Collapse::sizeHint() const {
    const int content = content_ ? content_->sizeHint().width() + indent() : 0;
    const int width = std::max(title_->sizeHint().width(), content);
    return {width, heightForWidth(this->width() > indent() ? this->width() : width)};
}

QSize Collapse::minimumSizeHint() const { return {withText(120), title_->sizeHint().height()}; }

void Collapse::arrange() {
    const int top = title_->sizeHint().height();
    title_->setGeometry(0, 0, width(), top);
    const int shown = heightForWidth(width()) - top;
    // What is closed is not there for the keyboard either.
    clip_->setVisible(expanded_ || shown > 0);
    clip_->setGeometry(indent(), top, std::max(0, width() - indent()), shown);
    if (content_) content_->setGeometry(0, contentGap, clip_->width(), contentHeight(clip_->width()));
    title_->update();
    setFixedHeight(top + shown);
}

void Collapse::resizeEvent(QResizeEvent* event) {
    if (event->size().width() != event->oldSize().width()) arrange();
}

// The title has another size now.
bool Collapse::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) arrange();
    return QWidget::event(event);
}

// The content has; its parent is told.
bool Collapse::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) arrange();
    return QWidget::eventFilter(watched, event);
}

}  // namespace vantor

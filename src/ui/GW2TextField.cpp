#include "ui/GW2TextField.h"

#include <QtGui/QContextMenuEvent>
#include <QtGui/QFontMetrics>
#include <QtGui/QLinearGradient>
#include <utility>

#include "ui/ControlState.h"
#include "ui/FieldMenu.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Images.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;
constexpr int fontSize = 14;
int imageSize() { return withText(16); }

}  // namespace

void GW2TextFieldStyle::paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inside = frame.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(palette::withAlpha(palette::gold, state.hovered ? 0.5 : 0.28), 1));
    painter.setBrush(palette::fieldInk);
    painter.drawRoundedRect(inside, 3, 3);
    // Light from above: the upper edge lies in the shadow.
    QLinearGradient shadow(inside.topLeft(), inside.topLeft() + QPointF(0, 6));
    shadow.setColorAt(0, palette::withAlpha(Qt::black, 0.6));
    shadow.setColorAt(1, palette::withAlpha(Qt::black, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(shadow);
    painter.drawRoundedRect(inside.adjusted(1, 1, -1, -1), 2, 2);
    painter.restore();
    if (state.focused) paintFocusRing(painter, frame);
}

QPalette GW2TextFieldStyle::colours() {
    QPalette colours;
    colours.setColor(QPalette::Text, palette::warmWhite);
    colours.setColor(QPalette::PlaceholderText, palette::dim);
    colours.setColor(QPalette::Base, QColor(0, 0, 0, 0));
    colours.setColor(QPalette::Window, QColor(0, 0, 0, 0));
    colours.setColor(QPalette::Highlight, palette::strokeLight);
    colours.setColor(QPalette::HighlightedText, palette::onRed);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::PlaceholderText})
        colours.setColor(QPalette::Disabled, role,
                         palette::withAlpha(colours.color(QPalette::Active, role), disabledOpacity));
    return colours;
}

GW2TextField::GW2TextField(const QString& placeholder, QWidget* parent) : QLineEdit(parent) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFrame(false);
    setFont(sansFont(fontSize));
    setPalette(GW2TextFieldStyle::colours());
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    fitMargins();
}

void GW2TextField::setLeadingImage(const QString& image) {
    leadingImage_ = image;
    fitMargins();
}

void GW2TextField::setClearable(bool clearable) {
    if (!clearable || clear_) return;
    clear_ = new ImageButton(QStringLiteral("clear"), QStringLiteral("clear"), QStringLiteral("Clear"), this);
    clear_->setImageSize(14);
    clear_->setQuiet(true);
    clear_->setFocusPolicy(Qt::NoFocus);
    clear_->setVisible(!text().isEmpty());
    QObject::connect(clear_, &QAbstractButton::clicked, this, [this] {
        // As the player would: what is only set from the program is not told as an edit.
        selectAll();
        del();
        setFocus();
    });
    QObject::connect(this, &QLineEdit::textChanged, clear_,
                     [this](const QString& text) { clear_->setVisible(!text.isEmpty()); });
    fitMargins();
}

void GW2TextField::setSecret(bool secret) { setEchoMode(secret ? QLineEdit::Password : QLineEdit::Normal); }

void GW2TextField::bind(Defaults& defaults, std::string_view key, std::string byDefault) {
    binding_ = std::make_unique<SettingBinding<std::string>>(defaults, key, std::move(byDefault));
    const auto show = [this](const std::string& stored) {
        const QString text = QString::fromStdString(stored);
        if (text != this->text()) setText(text);
    };
    show(binding_->value());
    binding_->observe(show);
    QObject::connect(this, &QLineEdit::textEdited, this,
                     [this](const QString& text) { binding_->set(text.toStdString()); });
}

void GW2TextField::fitMargins() {
    setTextMargins(ringRoom + (leadingImage_.isEmpty() ? 7 : imageSize() + 13), ringRoom,
                   ringRoom + (clear_ ? clear_->width() : 7), ringRoom);
}

QSize GW2TextField::sizeHint() const { return {withText(220), QFontMetrics(font()).height() + 14 + 2 * ringRoom}; }

QSize GW2TextField::minimumSizeHint() const { return {withText(100), sizeHint().height()}; }

void GW2TextField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    if (clear_) clear_->move(width() - clear_->width() - ringRoom, (height() - clear_->height()) / 2);
}

void GW2TextField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        ControlState state = ControlState::of(*this);
        state.focused = state.focused || hasFocus();
        if (!state.enabled) painter.setOpacity(disabledOpacity);
        style_.paintBackground(painter, QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom), state);
        if (!leadingImage_.isEmpty())
            painter.drawPixmap(ringRoom + 9, (height() - imageSize()) / 2,
                               image(leadingImage_, {imageSize(), imageSize()}, devicePixelRatioF()));
    }
    QLineEdit::paintEvent(event);
}

void GW2TextField::contextMenuEvent(QContextMenuEvent* event) { openFieldMenu(*this, event->pos()); }

}  // namespace vantor

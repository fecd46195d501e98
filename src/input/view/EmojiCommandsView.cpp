#include "input/view/EmojiCommandsView.h"

#include <QtGui/QPainter>
#include <utility>

#include "data/SettingKeys.h"
#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/Palette.h"
#include "ui/Pressable.h"

namespace vantor {

namespace {

constexpr int side = 30;
constexpr int titleSize = 20;
constexpr int gap = 2;
constexpr double corner = 2.5;

// The dark chip under each sign, readable over a bright scene as well.
void paintChip(QPainter& painter, const QRectF& frame, const ControlState& state) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::withAlpha(Qt::black, 0.7));
    painter.drawRoundedRect(frame, corner, corner);
    painter.setBrush(palette::withAlpha(palette::gold, 0.16 * state.glow));
    painter.drawRoundedRect(frame, corner, corner);
}

QString textOf(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// A sign in a square of 30 by 30; these windows take no focus, so neither do their buttons.
class SignButton : public Pressable {
public:
    explicit SignButton(QWidget* parent) : Pressable(parent) {
        setFocusPolicy(Qt::NoFocus);
        setFixedSize(side, side);
    }

protected:
    void paintSign(QPainter& painter, const QFont& font, const QColor& colour) const {
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(rect().translated(0, isDown() ? 1 : 0), Qt::AlignCenter, text());
    }
};

class ToggleButton final : public SignButton {
public:
    using SignButton::SignButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintChip(painter, rect(), state());
        painter.drawPixmap(rect(), image(QStringLiteral("ink_stain"), {side, side}, devicePixelRatioF()));
        paintSign(painter, sansFont(titleSize), palette::gold);
    }
};

class CommandButton final : public SignButton {
public:
    CommandButton(const EmojiCommand& command, QWidget* parent) : SignButton(parent) {
        setText(textOf(command.id));
        setToolTip(textOf(command.description));
        setAccessibleName(toolTip());
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintChip(painter, rect(), state());
        paintSign(painter, emojiFont(titleSize), palette::warmWhite);
    }
};

}  // namespace

EmojiCommandsView::EmojiCommandsView(EmojiCommands commands, Defaults& defaults, std::function<void(QSize)> resized,
                                     QWidget* parent)
    : QWidget(parent),
      commands_(commands),
      resized_(std::move(resized)),
      row_(new QHBoxLayout(this)),
      toggle_(new ToggleButton(this)) {
    row_->setContentsMargins(1, 1, 1, 1);
    row_->setSpacing(gap);
    row_->addWidget(toggle_);
    QObject::connect(toggle_, &QAbstractButton::clicked, this, [this] { setOpen(!isOpen_); });
    setting_ = defaults.observe([this](const std::string& key) {
        if (key == settings::enableEmojiCommands) rebuild();
    });
    rebuild();
}

QSize EmojiCommandsView::sizeHint() const {
    if (!commands_.enabled()) return {0, 0};
    const int count = 1 + static_cast<int>(buttons_.size());
    return {count * side + (count - 1) * gap + 2, side + 2};
}

void EmojiCommandsView::setOpen(bool open) {
    isOpen_ = open;
    rebuild();
}

// The order is that of this moment.
void EmojiCommandsView::rebuild() {
    // One of them may be the button whose press is being handled.
    for (QAbstractButton* const button : std::exchange(buttons_, {})) {
        button->hide();
        button->deleteLater();
    }
    const bool enabled = commands_.enabled();
    toggle_->setVisible(enabled);
    toggle_->setText(isOpen_ ? QStringLiteral("\u2715") : QStringLiteral("\u263A\uFE0E"));
    toggle_->setAccessibleName(isOpen_ ? QStringLiteral("Close the emotes") : QStringLiteral("Open the emotes"));
    if (enabled && isOpen_) {
        for (const EmojiCommand& command : commands_.ordered()) {
            auto* const button = new CommandButton(command, this);
            QObject::connect(button, &QAbstractButton::clicked, this, [this, command] {
                setOpen(false);
                commands_.use(command);
            });
            row_->addWidget(button);
            button->show();
            buttons_.push_back(button);
        }
    }
    updateGeometry();
    resized_(EmojiCommandsView::sizeHint());
}

}  // namespace vantor

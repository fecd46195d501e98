#include "input/view/HotkeyPopup.h"

#include <QtGui/QCloseEvent>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "input/view/HotkeyText.h"
#include "ui/EscapeCatch.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/NineParts.h"
#include "ui/Palette.h"
#include "ui/TextBlock.h"

namespace vantor {

namespace {

constexpr int padding = 20;
constexpr double opacity = 0.95;
constexpr int captureSize = 22;

// The sunken field that shows the captured combination.
class CaptureField final : public QWidget {
public:
    CaptureField(std::function<QString()> text, QWidget* parent) : QWidget(parent), text_(std::move(text)) {
        setFixedHeight(QFontMetrics(sansFont(captureSize)).height() + 24);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintNineParts(painter, QStringLiteral("keybind.field"), rect());
        const QString text = text_();
        painter.setFont(sansFont(text.isEmpty() ? 14 : captureSize));
        painter.setPen(text.isEmpty() ? palette::sand : palette::gold);
        const QRect room = rect().adjusted(12, 0, -12, 0);
        painter.drawText(room, Qt::AlignCenter,
                         text.isEmpty() ? QStringLiteral("not set")
                                        : painter.fontMetrics().elidedText(text, Qt::ElideMiddle, room.width()));
    }

private:
    std::function<QString()> text_;
};

}  // namespace

HotkeyPopup::HotkeyPopup(const QString& message, Defaults& defaults, std::string_view key, KeyMonitors& monitors,
                         Prepare prepare, std::function<void()> closed, bool pcKeyboard)
    : OverlayWindow({.focus = Focus::onClick, .movable = true}, std::move(prepare)),
      pcKeyboard_(pcKeyboard),
      closed_(std::move(closed)) {
    setWindowTitle(QStringLiteral("Vantor hotkey"));
    setAttribute(Qt::WA_ShowWithoutActivating, false);
    setMinimumWidth(440);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(padding + 8, padding, padding + 8, padding);
    column->setSpacing(14);
    column->addWidget(new TextBlock(TextRole::heading, QStringLiteral("Assign inputs to: ") + message, this));
    field_ = new CaptureField([this] { return shownText(); }, this);
    column->addWidget(field_);
    words_ = new TextBlock(TextRole::second, QString(), this);
    words_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    column->addWidget(words_);

    // Its room is kept, so that nothing moves when it has something to say.
    warning_ = new TextBlock(TextRole::hint, QString(), this);
    warning_->setMinimumHeight(2 * warning_->fontMetrics().lineSpacing());
    column->addWidget(warning_);

    auto* const buttons = new QHBoxLayout;
    const auto add = [&](const char* text, GW2ButtonStyle::Kind kind, std::function<void()> action) {
        auto* const button = new GW2Button(QString::fromLatin1(text), QString(), kind, this);
        // Every key is captured, so none can press a button.
        button->setFocusPolicy(Qt::NoFocus);
        QObject::connect(button, &QAbstractButton::clicked, this, std::move(action));
        buttons->addWidget(button);
    };
    using Kind = GW2ButtonStyle::Kind;
    add("Unbind", Kind::standard, [this] { capture_->unbind(); });
    add("Default", Kind::standard, [this] { capture_->restore(); });
    buttons->addStretch(1);
    add("Accept", Kind::primary, [this] {
        capture_->accept();
        finish();
    });
    add("Cancel", Kind::standard, [this] { finish(); });
    column->addLayout(buttons);

    capture_ = std::make_unique<HotkeyCapture>(
        defaults, key, monitors, [this] { return isActiveWindow(); }, [this] { follow(); });
    follow();
    escape_ = std::make_unique<EscapeCatch>(*this, [this] { finish(); }, EscapeCatch::At::release);
}

void HotkeyPopup::follow() {
    field_->setAccessibleName(shownText());
    field_->update();
    const QString words = hotkeyWords(capture_->newEvent(), pcKeyboard_);
    words_->setText(words.isEmpty() ? QStringLiteral("Press the keys that you want.") : words);
    warning_->setText(QString::fromStdString(capture_->warning()));
}

HotkeyPopup::~HotkeyPopup() = default;

QString HotkeyPopup::shownText() const { return hotkeyText(capture_->newEvent()); }

void HotkeyPopup::finish() {
    if (!capture_) return;
    capture_.reset();
    orderOut();
    closed_();
}

// A window manager's way of closing is Cancel.
void HotkeyPopup::closeEvent(QCloseEvent* event) {
    event->ignore();
    finish();
}

void HotkeyPopup::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(opacity);
    paintNineParts(painter, QStringLiteral("keybind.popup"), rect());
}

}  // namespace vantor

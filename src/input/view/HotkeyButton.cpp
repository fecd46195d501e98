#include "input/view/HotkeyButton.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <utility>

#include "input/view/HotkeyText.h"
#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/GW2Button.h"
#include "ui/Palette.h"
#include "ui/Pressable.h"

namespace vantor {

namespace {

constexpr int ringRoom = 3;

// A stored hotkey as a text on a pale background, filling the width that there is.
class HotkeyField final : public Pressable {
public:
    HotkeyField(const Defaults& defaults, std::string_view key, QString name, bool pcKeyboard, QWidget* parent)
        : Pressable(parent), defaults_(defaults), key_(key), name_(std::move(name)), pcKeyboard_(pcKeyboard) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        follow();
    }

    void follow() {
        const std::string stored = storedHotkey(defaults_, key_);
        setText(hotkeyText(stored));
        setToolTip(hotkeyWords(stored, pcKeyboard_));
        setAccessibleName(name_ + QStringLiteral(": ") + (text().isEmpty() ? QStringLiteral("not set") : text()));
        update();
    }
    [[nodiscard]] const std::string& key() const { return key_; }
    [[nodiscard]] QSize sizeHint() const override {
        const QFontMetrics metrics(sansFont(14));
        return {160, metrics.height() + 14 + 2 * ringRoom};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const ControlState state = Pressable::state();
        if (!state.enabled) painter.setOpacity(disabledOpacity);
        const QRect frame =
            rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom).translated(0, state.pressed ? 1 : 0);
        painter.fillRect(frame, palette::withAlpha(Qt::white, 0.1));
        paintHover(painter, frame, state.glow);
        painter.setFont(sansFont(14));
        painter.setPen(text().isEmpty() ? palette::sand : palette::gold);
        const QRect room = frame.adjusted(8, 2, -8, -2);
        painter.drawText(room, Qt::AlignCenter,
                         text().isEmpty() ? QStringLiteral("not set")
                                          : painter.fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width()));
        if (state.focused) paintFocusRing(painter, frame);
    }

private:
    const Defaults& defaults_;
    std::string key_;
    QString name_;
    bool pcKeyboard_;
};

}  // namespace

HotkeyButton::HotkeyButton(QString message, std::string_view primaryKey, std::string_view secondaryKey,
                           HotkeyNeeds needs, QWidget* parent)
    : QWidget(parent), message_(std::move(message)), needs_(std::move(needs)) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    // Only the first one's popup is raised over other floating windows; so the system has always done.
    addField(primaryKey, message_, WindowNature::raisedPopup);
    if (!secondaryKey.empty()) addField(secondaryKey, message_ + QStringLiteral(", second"), WindowNature::popup);
}

HotkeyButton::~HotkeyButton() = default;

void HotkeyButton::addField(std::string_view key, const QString& name, WindowNature nature) {
    auto* const field = new HotkeyField(needs_.defaults, key, name, needs_.pcKeyboard, this);
    layout()->addWidget(field);
    if (!focusProxy()) setFocusProxy(field);
    QObject::connect(field, &QAbstractButton::clicked, this,
                     [this, key = std::string(key), nature] { open(key, nature); });
    const auto fields = [this] { return findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly); };
    settings_ = needs_.defaults.observe([fields](const std::string& changed) {
        for (QWidget* const child : fields())
            if (auto* const each = dynamic_cast<HotkeyField*>(child); each && each->key() == changed) each->follow();
    });
}

void HotkeyButton::hideEvent(QHideEvent* event) {
    if (w_) w_->close();
    QWidget::hideEvent(event);
}

void HotkeyButton::open(std::string_view key, WindowNature nature) {
    // One at a time: of two captures the older one, which lies below, would take the keys.
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (dynamic_cast<HotkeyPopup*>(window) && window->isVisible()) window->close();
    w_ = std::make_unique<HotkeyPopup>(
        message_, needs_.defaults, key, needs_.monitors, [this, nature](WId native) { needs_.prepare(native, nature); },
        // It is in the middle of its own call.
        [this] { w_.release()->deleteLater(); }, needs_.pcKeyboard);
    w_->adjustSize();
    const QRect screen = needs_.screen();
    w_->move(screen.center() - w_->rect().center());
    w_->orderFront();
    w_->activateWindow();
}

}  // namespace vantor

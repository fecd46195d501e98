#include "ui/TextBlock.h"

#include <QtGui/QPalette>

#include "ui/Fonts.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

struct Look {
    QFont font;
    QColor colour;
};

Look lookOf(TextRole role) {
    switch (role) {
        case TextRole::title:
            return {serifFont(24), palette::gold};
        case TextRole::heading:
            return {serifFont(19), palette::gold};
        case TextRole::body:
            return {sansFont(14), palette::warmWhite};
        case TextRole::second:
            return {sansFont(13), palette::sand};
        case TextRole::hint:
            return {sansFont(12), palette::sand};
        case TextRole::value:
            return {sansFont(14), palette::gold};
        case TextRole::error:
            return {sansFont(14), palette::error};
        case TextRole::success:
            return {sansFont(14), palette::green};
    }
    return {sansFont(14), palette::warmWhite};
}

}  // namespace

TextBlock::TextBlock(TextRole role, const QString& plainText, QWidget* parent) : QLabel(parent), role_(role) {
    describeControls();
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setText(plainText);
    setRole(role);
    // The label's own policy, which another one would take from it: its height follows its width.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QAccessibleInterface* TextBlock::makeAccessible() {
    class Heading final : public QAccessibleWidget {
    public:
        explicit Heading(QLabel& label) : QAccessibleWidget(&label, QAccessible::Heading), label_(label) {}
        [[nodiscard]] QString text(QAccessible::Text kind) const override {
            return kind == QAccessible::Name ? label_.text() : QAccessibleWidget::text(kind);
        }

    private:
        QLabel& label_;
    };
    return role_ == TextRole::title || role_ == TextRole::heading ? new Heading(*this) : nullptr;
}

void TextBlock::setRole(TextRole role) {
    role_ = role;
    const Look look = lookOf(role);
    setFont(look.font);
    // Accents and descenders of the faces reach beyond the line's own height.
    const int beyond = withText(2);
    setContentsMargins(0, beyond, 0, beyond);
    QPalette colours = QLabel::palette();
    colours.setColor(QPalette::WindowText, look.colour);
    colours.setColor(QPalette::Link, palette::gold);
    colours.setColor(QPalette::LinkVisited, palette::gold);
    setPalette(colours);
}

void TextBlock::setRich(const QString& markup) {
    setTextFormat(Qt::RichText);
    setText(markup);
    if (markup.contains(QLatin1String("<a "))) {
        setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
        setFocusPolicy(Qt::TabFocus);
    }
}

void TextBlock::onLink(std::function<void(const QString& href)> handler) {
    QObject::connect(this, &QLabel::linkActivated, this, std::move(handler));
}

}  // namespace vantor

#include "accounts/view/AccountRow.h"

#include <QtGui/QPainter>
#include <QtGui/QTextDocument>
#include <QtWidgets/QHBoxLayout>
#include <utility>

#include "ui/GW2Button.h"
#include "ui/Palette.h"
#include "ui/TextBlock.h"

namespace vantor {

namespace {

// On one line whatever its length: a name without a space would otherwise push the buttons out of the window.
class AccountName final : public TextBlock {
public:
    AccountName(TextRole role, const QString& name, QWidget* parent) : TextBlock(role, name, parent) {
        setWordWrap(false);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::TextSingleLine, shown());
    }
    void resizeEvent(QResizeEvent* event) override {
        TextBlock::resizeEvent(event);
        setToolTip(shown() == text() ? QString() : Qt::convertFromPlainText(text()));
    }

private:
    [[nodiscard]] QString shown() const {
        return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
    }
};

}  // namespace

AccountRow::AccountRow(const QString& username, std::function<void()> fill, std::function<void()> remove,
                       QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_Hover);
    auto* const name = username.isEmpty() ? new AccountName(TextRole::hint, QStringLiteral("(no user name)"), this)
                                          : new AccountName(TextRole::value, username, this);
    auto* const fillButton = new GW2Button(QStringLiteral("Fill credentials"), this);
    auto* const deleteButton =
        new GW2Button(QStringLiteral("Delete"), QStringLiteral("trash"), GW2ButtonStyle::Kind::quiet, this);
    // Every row has the same two buttons; a screen reader tells which row it is.
    fillButton->setAccessibleName(QStringLiteral("Fill credentials of ") + username);
    deleteButton->setAccessibleName(QStringLiteral("Delete ") + username);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(12, 8, 8, 8);
    row->setSpacing(8);
    row->addWidget(name, 1);
    row->addWidget(fillButton);
    row->addWidget(deleteButton);
    QObject::connect(fillButton, &QAbstractButton::clicked, this, std::move(fill));
    QObject::connect(deleteButton, &QAbstractButton::clicked, this, std::move(remove));
}

void AccountRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (underMouse()) painter.fillRect(rect(), palette::withAlpha(palette::gold, 0.05));
    painter.fillRect(QRectF(0, height() - 1, width(), 1), palette::line);
}

}  // namespace vantor

#include "ui/EmptyState.h"

#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>
#include <utility>

#include "ui/Images.h"

namespace vantor {

namespace {

constexpr int stainWidth = 420;
constexpr int stainHeight = 260;

}  // namespace

EmptyState::EmptyState(QWidget* parent)
    : QWidget(parent),
      title_(new TextBlock(TextRole::title, QString(), this)),
      sentence_(new TextBlock(TextRole::second, QString(), this)),
      button_(new GW2Button(QString(), QString(), GW2ButtonStyle::Kind::primary, this)) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(48, 24, 48, 24);
    column->setSpacing(10);
    column->addStretch(1);
    for (TextBlock* const block : {title_, sentence_}) {
        block->setAlignment(Qt::AlignCenter);
        column->addWidget(block);
    }
    column->addWidget(button_, 0, Qt::AlignHCenter);
    column->addStretch(1);
    button_->hide();
    QObject::connect(button_, &QAbstractButton::clicked, this, [this] {
        if (action_) action_();
    });
}

void EmptyState::setText(const QString& title, const QString& sentence) {
    title_->setText(title);
    title_->setVisible(!title.isEmpty());
    sentence_->setText(sentence);
}

void EmptyState::setAction(const QString& text, std::function<void()> action) {
    action_ = std::move(action);
    button_->setText(text);
    button_->setVisible(!text.isEmpty());
    button_->updateGeometry();
}

void EmptyState::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(0.5);
    painter.drawPixmap((width() - stainWidth) / 2, (height() - stainHeight) / 2,
                       image(QStringLiteral("ink_stain"), {stainWidth, stainHeight}, devicePixelRatioF()));
}

}  // namespace vantor

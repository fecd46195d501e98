#include "ui/EmptyState.h"

#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
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
      way_{new GW2Button(QString(), QString(), GW2ButtonStyle::Kind::primary, this)},
      otherWay_{new GW2Button(QString(), this)} {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(48, 24, 48, 24);
    column->setSpacing(10);
    column->addStretch(1);
    for (TextBlock* const block : {title_, sentence_}) {
        block->setAlignment(Qt::AlignCenter);
        column->addWidget(block);
    }
    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    row->addStretch(1);
    for (Way* const way : {&way_, &otherWay_}) {
        row->addWidget(way->button);
        way->button->hide();
        QObject::connect(way->button, &QAbstractButton::clicked, this, [way] {
            if (way->action) way->action();
        });
    }
    row->addStretch(1);
    column->addLayout(row);
    column->addStretch(1);
}

void EmptyState::setText(const QString& title, const QString& sentence) {
    title_->setText(title);
    title_->setVisible(!title.isEmpty());
    sentence_->setText(sentence);
}

void EmptyState::setAction(const QString& text, std::function<void()> action) { offer(way_, text, std::move(action)); }

void EmptyState::setOtherAction(const QString& text, std::function<void()> action) {
    offer(otherWay_, text, std::move(action));
}

void EmptyState::offer(Way& way, const QString& text, std::function<void()> action) {
    way.action = std::move(action);
    way.button->setText(text);
    way.button->setVisible(!text.isEmpty());
    way.button->updateGeometry();
}

void EmptyState::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(0.5);
    painter.drawPixmap((width() - stainWidth) / 2, (height() - stainHeight) / 2,
                       image(QStringLiteral("ink_stain"), {stainWidth, stainHeight}, devicePixelRatioF()));
}

}  // namespace vantor

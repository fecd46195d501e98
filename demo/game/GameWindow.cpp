#include "GameWindow.h"

#include <QtGui/QScreen>
#include <cstdio>

namespace game {
namespace {

constexpr int chatWidth = 520;
constexpr int lineHeight = 20;
constexpr int linesShown = 6;

}  // namespace

GameWindow::GameWindow(Scene scene, Recorder& recorder) : scene_(scene), recorder_(recorder) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

bool GameWindow::event(QEvent* event) {
    // Tab belongs to the game, not to the walk among widgets.
    if (event->type() == QEvent::KeyPress) {
        keyPressEvent(static_cast<QKeyEvent*>(event));
        return true;
    }
    return QWidget::event(event);
}

void GameWindow::keyPressEvent(QKeyEvent* event) {
    recorder_.key(*event, true);
    typed(event->text());
}

void GameWindow::keyReleaseEvent(QKeyEvent* event) { recorder_.key(*event, false); }

void GameWindow::focusInEvent(QFocusEvent*) {
    recorder_.focus(true);
    if (clip_ && isFullScreen()) clip_->hold(screen()->size());
}

void GameWindow::focusOutEvent(QFocusEvent*) {
    recorder_.focus(false);
    if (clip_) clip_->release();
}

void GameWindow::mousePressEvent(QMouseEvent* event) {
    recorder_.click(static_cast<int>(event->position().x()), static_cast<int>(event->position().y()));
}

void GameWindow::typed(const QString& text) {
    for (const QChar letter : text) {
        if (letter == QLatin1Char('\r') || letter == QLatin1Char('\n')) {
            if (!line_.isEmpty()) said_.append(line_);
            line_.clear();
        } else if (letter == QLatin1Char('\b')) {
            line_.chop(1);
        } else if (letter.isPrint() || letter.isSurrogate()) {
            line_ += letter;
        }
    }
    update();
}

void GameWindow::paintEvent(QPaintEvent*) {
    if (landscape_.size() != size()) {
        landscape_ = QPixmap(size());
        QPainter painter(&landscape_);
        drawScene(painter, rect(), scene_);
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, landscape_);

    const auto shown = said_.mid(std::max<qsizetype>(0, said_.size() - linesShown));
    const QRect chat(16, height() - 16 - lineHeight * (linesShown + 2), chatWidth, lineHeight * (linesShown + 2));
    painter.fillRect(chat, QColor(0, 0, 0, 130));
    painter.setPen(QColor(0xe8, 0xe8, 0xe8));
    auto row = chat.adjusted(10, 6, -10, 0);
    row.setHeight(lineHeight);
    for (const auto& line : shown) {
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, line);
        row.translate(0, lineHeight);
    }
    row.moveBottom(chat.bottom() - 8);
    painter.setPen(Qt::white);
    // The end of a long line is what was typed last.
    const auto end = painter.fontMetrics().elidedText(line_ + QLatin1Char('_'), Qt::ElideLeft, row.width());
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, end);

    if (!announced_) {
        announced_ = true;
        std::printf("ready 0x%llx\n", static_cast<unsigned long long>(winId()));
        std::fflush(stdout);
    }
}

}  // namespace game

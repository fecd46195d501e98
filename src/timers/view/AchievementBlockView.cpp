#include "timers/view/AchievementBlockView.h"

#include <QtCore/QStringList>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <utility>

#include "ui/Fonts.h"
#include "ui/Images.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

int lineHeight() { return withText(24); }
int progressWidth() { return withText(156); }

constexpr int edge = 8;  // above and below
constexpr int barWidth = 96;

QString itemsText(const AchievementBlock& block) {
    QStringList parts;
    for (const std::string& kind : block.items) parts << QString::fromStdString(kind);
    return QStringLiteral("Gives ") + parts.join(QStringLiteral(" · "));
}

QString spoken(const AchievementBlock& block) {
    QStringList lines;
    for (const AchievementLine& line : block.achievements) {
        QString text = QString::fromStdString(line.title + ": " + line.progress);
        if (!line.collects.empty()) text += QStringLiteral(", ") + QString::fromStdString(line.collects);
        lines << text;
    }
    if (!block.items.empty()) lines << itemsText(block);
    if (!block.note.empty()) lines << QString::fromStdString(block.note);
    return lines.join(QStringLiteral(". "));
}

}  // namespace

AchievementBlockView::AchievementBlockView(QWidget* parent) : QWidget(parent) {}

void AchievementBlockView::setBlock(AchievementBlock block) {
    if (block == block_) return;
    block_ = std::move(block);
    setAccessibleName(spoken(block_));
    update();
}

int AchievementBlockView::heightOf(const AchievementBlock& block) {
    const auto lines =
        static_cast<int>(block.achievements.size()) + (block.items.empty() ? 0 : 1) + (block.note.empty() ? 0 : 1);
    return lines * lineHeight() + 2 * edge + 6;
}

void AchievementBlockView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::withAlpha(palette::gold, 0.10), 1));
    painter.setBrush(QColor(0, 0, 0, 90));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -6.5), 3, 3);
    QRect frame(12, edge, width() - 24, lineHeight());
    for (const AchievementLine& line : block_.achievements) {
        paintLine(painter, frame, line);
        frame.translate(0, lineHeight());
    }
    painter.setFont(sansFont(12));
    const auto foot = [&](const QString& picture, const QString& words, const QColor& colour) {
        painter.setPen(colour);
        painter.drawPixmap(frame.left(), frame.center().y() - 8, image(picture, {16, 16}, devicePixelRatioF()));
        painter.drawText(frame.adjusted(24, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         painter.fontMetrics().elidedText(words, Qt::ElideRight, frame.width() - 24));
        frame.translate(0, lineHeight());
    };
    if (!block_.items.empty()) foot(QStringLiteral("reward"), itemsText(block_), palette::sand);
    if (!block_.note.empty()) foot(QStringLiteral("info"), QString::fromStdString(block_.note), palette::dim);
}

void AchievementBlockView::paintLine(QPainter& painter, const QRect& frame, const AchievementLine& line) const {
    const bool done = line.state == AchievementState::done;
    const QRectF mark(frame.left() + 1.5, frame.center().y() - 6, 13, 13);
    if (done) {
        painter.drawPixmap(frame.left(), frame.center().y() - 8,
                           image(QStringLiteral("checkmark"), {16, 16}, devicePixelRatioF()));
    } else if (line.state != AchievementState::unknown) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette::withAlpha(palette::sand, 0.6), 1.4));
        painter.drawEllipse(mark.adjusted(1, 1, -1, -1));
    }

    const int progressLeft = frame.right() - progressWidth();
    painter.setFont(sansFont(13));
    painter.setPen(done ? palette::green : line.state == AchievementState::started ? palette::gold : palette::dim);
    painter.drawText(
        QRect(progressLeft, frame.top(), progressWidth(), frame.height()), Qt::AlignVCenter | Qt::AlignRight,
        painter.fontMetrics().elidedText(QString::fromStdString(line.progress), Qt::ElideRight, progressWidth()));

    const QRectF bar(progressLeft - 12 - barWidth, frame.center().y() - 1, barWidth, 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::withAlpha(palette::gold, 0.14));
    if (line.state != AchievementState::unknown) painter.drawRoundedRect(bar, 2, 2);
    if (line.part > 0) {
        painter.setBrush(done ? palette::green : palette::gold);
        painter.drawRoundedRect(QRectF(bar.left(), bar.top(), std::max(4.0, bar.width() * line.part), 4), 2, 2);
    }

    int left = frame.left() + 24;
    const int right = static_cast<int>(bar.left()) - 12;
    const QString title =
        painter.fontMetrics().elidedText(QString::fromStdString(line.title), Qt::ElideRight, std::max(0, right - left));
    painter.setPen(line.titleKnown ? (done ? palette::sand : palette::warmWhite) : palette::dim);
    painter.drawText(QRect(left, frame.top(), right - left, frame.height()), Qt::AlignVCenter, title);
    left += painter.fontMetrics().horizontalAdvance(title) + 12;
    if (line.collects.empty() || left + 40 > right) return;
    painter.setFont(sansFont(12));
    painter.setPen(palette::dim);
    painter.drawText(
        QRect(left, frame.top(), right - left, frame.height()), Qt::AlignVCenter,
        painter.fontMetrics().elidedText(QString::fromStdString(line.collects), Qt::ElideRight, right - left));
}

}  // namespace vantor

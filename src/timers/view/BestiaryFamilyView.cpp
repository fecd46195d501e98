#include "timers/view/BestiaryFamilyView.h"

#include <QtCore/QFile>
#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "ui/ControlState.h"
#include "ui/Fonts.h"
#include "ui/Images.h"

namespace vantor {

namespace {

int titleHeight() { return withText(22); }
int progressHeight() { return withText(24); }

constexpr int edge = 12;
constexpr int pictureSize = 44;
constexpr int textLeft = edge + pictureSize + 12;

const auto neutralIcon = QStringLiteral("race_neutral");

QString toText(const std::string& utf8) { return QString::fromStdString(utf8); }

int wrappedHeight(const QFont& font, const QString& words, int width) {
    if (words.isEmpty()) return 0;
    return QFontMetrics(font).boundingRect(QRect(0, 0, std::max(1, width), 4000), Qt::TextWordWrap, words).height();
}

QString iconName(const std::string& icon) {
    const QString name = toText(icon);
    return QFile::exists(QStringLiteral(":/images/") + name + QStringLiteral(".svg")) ? name : neutralIcon;
}

QString spoken(const BestiaryFamily& family) {
    QString words = bestiaryTitle(family.id) + QStringLiteral(", ");
    words += family.tracked ? toText(family.progress) : QStringLiteral("no achievement");
    return words + QStringLiteral(". ") + toText(family.description) + QStringLiteral(" ") + toText(family.unlock);
}

}  // namespace

QString bestiaryTitle(const std::string& id) {
    QString title = toText(id).replace(QLatin1Char('_'), QLatin1Char(' '));
    if (!title.isEmpty()) title[0] = title[0].toUpper();
    return title;
}

BestiaryFamilyView::BestiaryFamilyView(BestiaryFamily family, QWidget* parent)
    : QAbstractButton(parent), family_(std::move(family)) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(spoken(family_));
    setToolTip(QStringLiteral("Look up in the wiki"));
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void BestiaryFamilyView::setFamily(BestiaryFamily family) {
    if (family == family_) return;
    family_ = std::move(family);
    setAccessibleName(spoken(family_));
    update();
}

int BestiaryFamilyView::heightForWidth(int width) const {
    const int room = width - textLeft - edge;
    const int texts = titleHeight() + wrappedHeight(sansFont(13), toText(family_.description), room) + 3 +
                      wrappedHeight(sansFont(12), toText(family_.unlock), room) + progressHeight();
    return std::max(texts, pictureSize) + 2 * edge - 4;
}

void BestiaryFamilyView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool done = family_.tracked && family_.state == AchievementState::done;
    const QRectF background = QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5).translated(0, isDown() ? 1 : 0);
    painter.setPen(QPen(done ? palette::withAlpha(palette::green, 0.35) : palette::withAlpha(palette::gold, 0.12), 1));
    painter.setBrush(isDown() ? QColor(0, 0, 0, 120) : QColor(0, 0, 0, 70));
    painter.drawRoundedRect(background, 4, 4);
    if (underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, 0.07));
        painter.drawRoundedRect(background, 4, 4);
    }
    painter.translate(0, isDown() ? 1 : 0);
    paintIcon(painter, QRect(edge, edge, pictureSize, pictureSize));

    const int room = width() - textLeft - edge;
    QRect frame(textLeft, edge - 4, room, titleHeight());
    painter.setFont(sansFont(15, true));
    painter.setPen(palette::warmWhite);
    painter.drawText(frame, Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(bestiaryTitle(family_.id), Qt::ElideRight, room));
    const auto paragraph = [&](const QFont& font, const QColor& colour, const std::string& words, int distance) {
        frame = QRect(textLeft, frame.bottom() + 1 + distance, room, wrappedHeight(font, toText(words), room));
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(frame, Qt::TextWordWrap, toText(words));
    };
    paragraph(sansFont(13), palette::sand, family_.description, 0);
    paragraph(sansFont(12), palette::dim, family_.unlock, 3);
    if (family_.tracked)
        paintProgress(painter, QRect(textLeft, height() - edge - progressHeight() + 6, room, withText(20)));
    if (hasFocus()) paintFocusRing(painter, background.adjusted(1.5, 1.5, -1.5, -1.5));
}

void BestiaryFamilyView::paintIcon(QPainter& painter, const QRect& frame) const {
    painter.drawPixmap(frame.topLeft(), image(iconName(family_.icon), frame.size(), devicePixelRatioF()));
}

void BestiaryFamilyView::paintProgress(QPainter& painter, const QRect& frame) const {
    const bool done = family_.state == AchievementState::done;
    QRect words = frame;
    if (done) {
        painter.drawPixmap(frame.left(), frame.center().y() - 7,
                           image(QStringLiteral("checkmark"), {14, 14}, devicePixelRatioF()));
        words.setLeft(frame.left() + 19);
    } else if (family_.state != AchievementState::unknown) {
        const QRectF bar(frame.left(), frame.center().y() - 1, 96, 4);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette::withAlpha(palette::gold, 0.14));
        painter.drawRoundedRect(bar, 2, 2);
        if (family_.part > 0) {
            painter.setBrush(palette::gold);
            painter.drawRoundedRect(QRectF(bar.left(), bar.top(), std::max(4.0, bar.width() * family_.part), 4), 2, 2);
        }
        words.setLeft(static_cast<int>(bar.right()) + 12);
    }
    painter.setFont(sansFont(13));
    painter.setPen(done ? palette::green : family_.state == AchievementState::started ? palette::gold : palette::dim);
    painter.drawText(words, Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(toText(family_.progress), Qt::ElideRight, words.width()));
}

}  // namespace vantor

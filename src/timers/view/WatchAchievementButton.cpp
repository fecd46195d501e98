#include "timers/view/WatchAchievementButton.h"

#include <QtGui/QPainter>
#include <QtGui/QRadialGradient>

#include "timers/WatchedEvents.h"
#include "ui/Palette.h"

namespace vantor {

namespace {

const QColor orange(0xFF, 0x95, 0x00);

}  // namespace

WatchAchievementButton::WatchAchievementButton(Defaults& defaults, QWidget* parent)
    : RowButton(QStringLiteral("watch"), parent), defaults_(defaults) {
    setToolTip(QStringLiteral("Watch\nIt floats over the game when it is about to happen"));
    setCheckable(true);
    connect(this, &QAbstractButton::clicked, this, [this] {
        // The row follows the stored list; a mark that could not be stored is none.
        if (toggleWatched(defaults_, name_) == Defaults::Verdict::failed)
            setChecked(isWatched(readWatchedNames(defaults_), name_));
    });
}

void WatchAchievementButton::setEvent(const std::string& name, bool watched, const QString& spoken) {
    name_ = name;
    setChecked(watched);
    setImage(watched ? QStringLiteral("watch.active") : QStringLiteral("watch"));
    setSpokenName(QStringLiteral("Watch ") + spoken);
}

void WatchAchievementButton::paintBackground(QPainter& painter, const QRectF& background) const {
    RowButton::paintBackground(painter, background);
    const QRectF inner = background.adjusted(1, 1, -1, -1);
    painter.setPen(Qt::NoPen);
    if (isChecked()) {
        // From the middle of the lower edge: whole up to 20, gone at 90.
        QRadialGradient glow(QPointF(background.center().x(), background.bottom()), 90);
        glow.setColorAt(20.0 / 90, palette::withAlpha(orange, 0.2));
        glow.setColorAt(1, palette::withAlpha(orange, 0));
        painter.setBrush(glow);
        painter.drawRoundedRect(inner, 3, 3);
        painter.setPen(QPen(palette::withAlpha(palette::brightAmber, 0.6), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(background.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    } else {
        QLinearGradient shade(inner.topLeft(), inner.bottomLeft());
        shade.setColorAt(0, QColor(0, 0, 0, 128));
        shade.setColorAt(1, QColor(0, 0, 0, 0));
        painter.setBrush(shade);
        painter.drawRoundedRect(inner, 3, 3);
    }
}

}  // namespace vantor

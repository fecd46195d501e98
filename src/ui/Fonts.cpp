#include "ui/Fonts.h"

#include <QtCore/QVariant>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontMetricsF>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>

namespace vantor {

namespace {

// Names of our own, given to the embedded faces by the build, so that a face which happens to be installed under the
// original name is not taken instead.
const auto serifFamily = QStringLiteral("Vantor Serif");
const auto sansFamily = QStringLiteral("Vantor Sans");
constexpr const char* scaleProperty = "vantorTextScale";

}  // namespace

FontsVerdict registerFonts() {
    bool embedded = true;
    for (const char* const face : {":/fonts/serif", ":/fonts/sans", ":/fonts/sans-bold"})
        embedded &= QFontDatabase::addApplicationFont(QLatin1String(face)) >= 0;
    return embedded ? FontsVerdict::embedded : FontsVerdict::fallback;
}

void setTextScale(double scale) { qApp->setProperty(scaleProperty, std::clamp(scale, 1.0, 2.0)); }

double textScale() {
    const QVariant scale = qApp ? qApp->property(scaleProperty) : QVariant();
    return scale.isValid() ? scale.toDouble() : 1.0;
}

double textScaleFor(const QFont& desktopFont) {
    constexpr double usualPoints = 11;
    constexpr double pointsPerPixel = 72.0 / 96.0;
    const double points =
        desktopFont.pointSizeF() > 0 ? desktopFont.pointSizeF() : desktopFont.pixelSize() * pointsPerPixel;
    return std::clamp(points / usualPoints, 1.0, 2.0);
}

int withText(int pixels) { return static_cast<int>(std::lround(pixels * textScale())); }

QFont serifFont(int pixels) {
    QFont font(serifFamily);
    font.setStyleHint(QFont::Serif);
    font.setPixelSize(withText(pixels));
    return font;
}

QFont sansFont(int pixels, bool bold) {
    QFont font(sansFamily);
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(withText(pixels));
    font.setBold(bold);
    return font;
}

QFont emojiFont(int pixels) {
    QFont font;
    font.setFamilies({QStringLiteral("Noto Color Emoji"), QStringLiteral("Apple Color Emoji"), sansFamily});
    font.setPixelSize(pixels);
    return font;
}

void drawFigures(QPainter& painter, const QFont& font, QPointF rightOnBaseLine, const QString& text) {
    painter.setFont(font);
    painter.drawText(rightOnBaseLine - QPointF(QFontMetricsF(font).horizontalAdvance(text), 0), text);
}

}  // namespace vantor

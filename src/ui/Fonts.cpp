#include "ui/Fonts.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>
#include <algorithm>
#include <cmath>

#include "ui/FigureSubstitution.h"

namespace vantor {

namespace {

// Names of our own, so that a face which happens to be installed under the original name is not taken instead.
const auto serifAlias = QStringLiteral("Vantor Serif");
const auto sansAlias = QStringLiteral("Vantor Sans");
constexpr const char* scaleProperty = "vantorTextScale";

QString familyOf(const QString& resource, const QString& own) {
    QFile file(resource);
    if (!file.open(QIODevice::ReadOnly)) return {};
    // A face that is also installed would else be taken from the system, with the figures that it has there.
    const QByteArray face = withFamilyName(withLiningFigures(file.readAll()), own);
    const int id = QFontDatabase::addApplicationFontFromData(face);
    const QStringList families = id < 0 ? QStringList() : QFontDatabase::applicationFontFamilies(id);
    return families.value(0);
}

}  // namespace

FontsVerdict registerFonts() {
    const QString serif = familyOf(QStringLiteral(":/fonts/serif"), serifAlias);
    const QString sans = familyOf(QStringLiteral(":/fonts/sans"), sansAlias);
    const QString sansBold = familyOf(QStringLiteral(":/fonts/sans-bold"), sansAlias);
    if (!serif.isEmpty()) QFont::insertSubstitution(serifAlias, serif);
    if (!sans.isEmpty()) QFont::insertSubstitution(sansAlias, sans);
    return serif.isEmpty() || sans.isEmpty() || sansBold.isEmpty() ? FontsVerdict::fallback : FontsVerdict::embedded;
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
    QFont font(serifAlias);
    font.setStyleHint(QFont::Serif);
    font.setPixelSize(withText(pixels));
    return font;
}

QFont sansFont(int pixels, bool bold) {
    QFont font(sansAlias);
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(withText(pixels));
    font.setBold(bold);
    return font;
}

QFont emojiFont(int pixels) {
    QFont font;
    font.setFamilies({QStringLiteral("Noto Color Emoji"), QStringLiteral("Apple Color Emoji"), sansAlias});
    font.setPixelSize(pixels);
    return font;
}

}  // namespace vantor

#include "ui/Fonts.h"

#include <QtCore/QStringList>
#include <QtGui/QFontDatabase>

namespace vantor {

namespace {

// Names of our own, so that a face which happens to be installed under the original name is not taken instead.
const auto serifAlias = QStringLiteral("Vantor Serif");
const auto sansAlias = QStringLiteral("Vantor Sans");

QString familyOf(const QString& resource) {
    const int id = QFontDatabase::addApplicationFont(resource);
    const QStringList families = id < 0 ? QStringList() : QFontDatabase::applicationFontFamilies(id);
    return families.value(0);
}

}  // namespace

FontsVerdict registerFonts() {
    const QString serif = familyOf(QStringLiteral(":/fonts/serif"));
    const QString sans = familyOf(QStringLiteral(":/fonts/sans"));
    const QString sansBold = familyOf(QStringLiteral(":/fonts/sans-bold"));
    if (!serif.isEmpty()) QFont::insertSubstitution(serifAlias, serif);
    if (!sans.isEmpty()) QFont::insertSubstitution(sansAlias, sans);
    return serif.isEmpty() || sans.isEmpty() || sansBold.isEmpty() ? FontsVerdict::fallback : FontsVerdict::embedded;
}

QFont serifFont(int pixels) {
    QFont font(serifAlias);
    font.setStyleHint(QFont::Serif);
    font.setPixelSize(pixels);
    return font;
}

QFont sansFont(int pixels, bool bold) {
    QFont font(sansAlias);
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

}  // namespace vantor

#include "timers/WordSearch.h"

#include <QtCore/QStringList>
#include <algorithm>

namespace vantor {

namespace {

// Letters that players type without their stroke or ligature and that Unicode does not decompose.
QLatin1StringView plainLetter(char16_t letter) {
    switch (letter) {
        case u'ø':
            return QLatin1StringView("o");
        case u'ł':
            return QLatin1StringView("l");
        case u'đ':
            return QLatin1StringView("d");
        case u'ı':
            return QLatin1StringView("i");
        case u'æ':
            return QLatin1StringView("ae");
        case u'œ':
            return QLatin1StringView("oe");
        case u'\u2018':
        case u'\u2019':
            return QLatin1StringView("'");
        default:
            return {};
    }
}

}  // namespace

QString foldedForSearch(std::string_view text) {
    const QString parts = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
                              .normalized(QString::NormalizationForm_KD)
                              .toCaseFolded();
    QString folded;
    folded.reserve(parts.size());
    for (const QChar letter : parts) {
        if (letter.isMark()) continue;
        if (const QLatin1StringView plain = plainLetter(letter.unicode()); !plain.isEmpty())
            folded += plain;
        else
            folded += letter;
    }
    return folded;
}

WordSearch::WordSearch(std::string_view query) {
    const QStringList words = foldedForSearch(query).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    words_.assign(words.begin(), words.end());
}

bool WordSearch::finds(const QString& folded) const {
    return std::ranges::all_of(words_, [&](const QString& word) { return folded.contains(word); });
}

}  // namespace vantor

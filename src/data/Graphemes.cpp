#include "data/Graphemes.h"

#include <QtCore/QTextBoundaryFinder>

namespace vantor {

namespace {

// In texts with Thai or Indian scripts the toolkit's finder (6.4) also stops inside an emoji, inside a code point and
// between a carriage return and its line feed. What extends a character never begins one (Unicode, annex 29, rules 3, 9
// and 11).
bool continuesCharacter(const QString& text, qsizetype at) {
    if (at <= 0 || at >= text.size()) return false;
    const QChar before = text[at - 1];
    if (text[at].isLowSurrogate() && before.isHighSurrogate()) return true;
    if (text[at] == QLatin1Char('\n') && before == QLatin1Char('\r')) return true;
    const QChar next = at + 1 < text.size() ? text[at + 1] : QChar();
    const char32_t code = text[at].isHighSurrogate() ? QChar::surrogateToUcs4(text[at], next) : text[at].unicode();
    const QChar::Category category = QChar::category(code);
    constexpr char16_t nonJoiner = 0x200c;
    constexpr char16_t joiner = 0x200d;
    const bool isFormat = before.category() == QChar::Other_Format && before != nonJoiner && before != joiner;
    if (isFormat || before.category() == QChar::Other_Control) return false;
    const bool isSkinTone = code >= 0x1f3fb && code <= 0x1f3ff;
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || code == nonJoiner ||
           code == joiner || isSkinTone || (before == joiner && category == QChar::Symbol_Other);
}

template <typename Take>
void forEachGrapheme(const QString& text, const Take& take) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end > start; end = finder.toNextBoundary()) {
        if (continuesCharacter(text, end)) continue;
        take(start, end - start);
        start = end;
    }
}

}  // namespace

std::vector<QString> graphemes(const QString& text) {
    std::vector<QString> found;
    forEachGrapheme(text, [&](qsizetype start, qsizetype length) { found.push_back(text.mid(start, length)); });
    return found;
}

std::size_t graphemeCount(const QString& text) {
    std::size_t count = 0;
    forEachGrapheme(text, [&](qsizetype, qsizetype) { ++count; });
    return count;
}

}  // namespace vantor

#include "data/Graphemes.h"

#include <QTextBoundaryFinder>

namespace vantor {

namespace {

template <typename Take>
void forEachGrapheme(const QString& text, const Take& take) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
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

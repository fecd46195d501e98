#pragma once
// What is typed for a key map, and what of it must arrive. Pure, any thread.

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QTextBoundaryFinder>
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "input/KeyStrokes.h"

namespace vantor::sweep {

struct Sample {
    std::string typed;
    std::string expected;
};

inline constexpr std::array<const char*, 10> rareTexts = {"☃", "漢", "Ж", "ß", "é", "Ω", "ש", "ก", "😀", "👩‍🚀"};
inline constexpr std::size_t lettersBetween = 16;

inline bool isPrintable(const std::string& text) {
    const QString wide = QString::fromStdString(text);
    return !text.ends_with(" [NUM]") &&
           std::none_of(wide.begin(), wide.end(), [](QChar each) { return each.category() == QChar::Other_Control; });
}

inline std::vector<std::string> printableOf(const KeyMap& map) {
    std::vector<std::string> texts;
    for (const auto& [text, keys] : map.entries())
        if (isPrintable(text)) texts.push_back(text);
    // Those without a modifier first: the first press of a modifier would let go of one that is held.
    std::stable_sort(texts.begin(), texts.end(), [&](const std::string& left, const std::string& right) {
        return map.find(left)->size() < map.find(right)->size();
    });
    return texts;
}

// Marks, joiners and the like may become one character with what stands beside them.
inline bool standsAlone(const QString& text) {
    const QList<uint> codes = text.toUcs4();
    return std::all_of(codes.begin(), codes.end(), [](char32_t each) {
        const QChar::Category category = QChar::category(each);
        return category > QChar::Mark_Enclosing && category != QChar::Other_Format;
    });
}

// Collects pieces that are to stay characters of their own.
class SampleWriter {
public:
    void add(const std::string& piece, bool arrives) {
        const QString wide = QString::fromStdString(piece);
        if (!last_.isEmpty() && !isBoundary(last_, wide)) append(QStringLiteral("\t"), true);
        append(wide, arrives);
    }
    [[nodiscard]] Sample sample() const { return sample_; }

private:
    // The whole text since the last tab decides: some rules look further back than one character.
    [[nodiscard]] bool isBoundary(const QString& before, const QString& after) const {
        if (!standsAlone(before.last(1)) || !standsAlone(after)) return false;
        const QString both = before + after;
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, both);
        finder.setPosition(before.size());
        return finder.isAtBoundary();
    }
    void append(const QString& text, bool arrives) {
        last_ = text == QStringLiteral("\t") ? QString() : last_ + text;
        sample_.typed += text.toStdString();
        if (arrives) sample_.expected += text.toStdString();
    }

    QString last_;
    Sample sample_;
};

// Everything that the map has a key for, except control characters and the keypad's texts, each once. A tab stands
// between two that would otherwise be one character to the reader.
inline Sample everythingOf(const KeyMap& map) {
    SampleWriter writer;
    for (const std::string& each : printableOf(map)) writer.add(each, true);
    return writer.sample();
}

// Some of the map's characters, with others between them that the map lacks.
inline Sample withLackingOf(const KeyMap& map) {
    std::vector<std::string> lacking;
    std::copy_if(rareTexts.begin(), rareTexts.end(), std::back_inserter(lacking),
                 [&](const std::string& each) { return strokesOfText(map, each).empty(); });
    const std::vector<std::string> texts = printableOf(map);
    SampleWriter writer;
    for (std::size_t at = 0; at < texts.size(); at += std::max<std::size_t>(1, texts.size() / lettersBetween)) {
        writer.add(lacking[at % lacking.size()], false);
        writer.add(texts[at], true);
    }
    return writer.sample();
}

}  // namespace vantor::sweep

#pragma once
// What a search field asks for: words, all of which must be found, in any order and within any of the texts. Case,
// accents and the kind of apostrophe make no difference. Values; any thread.

#include <QtCore/QString>
#include <string_view>
#include <vector>

namespace vantor {

// The text as it is compared: without case, accents and ligatures. For callers that keep it.
[[nodiscard]] QString foldedForSearch(std::string_view text);

class WordSearch {
public:
    WordSearch() = default;
    explicit WordSearch(std::string_view query);

    // Asks for nothing, so that everything is found.
    [[nodiscard]] bool isEmpty() const { return words_.empty(); }
    [[nodiscard]] bool finds(const QString& folded) const;

    bool operator==(const WordSearch&) const = default;

private:
    std::vector<QString> words_;  // folded
};

}  // namespace vantor

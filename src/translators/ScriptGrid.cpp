#include "translators/ScriptGrid.h"

#include <algorithm>

#include "data/Graphemes.h"

namespace vantor {

std::vector<std::vector<QString>> scriptRows(const QString& typed) {
    const auto characters = graphemes(typed.isEmpty() ? QString::fromLatin1(scriptAlphabet.data()) : typed);
    std::vector<std::vector<QString>> rows;
    for (std::size_t start = 0; start < characters.size(); start += charactersPerRow) {
        const std::size_t end = std::min(start + charactersPerRow, characters.size());
        rows.emplace_back(characters.begin() + static_cast<std::ptrdiff_t>(start),
                          characters.begin() + static_cast<std::ptrdiff_t>(end));
    }
    return rows;
}

}  // namespace vantor

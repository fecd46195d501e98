#include "input/KeyStrokes.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <algorithm>
#include <optional>

#include "data/Graphemes.h"
#include "input/KeyNames.h"

namespace vantor {
namespace {

void appendPress(std::vector<PostedKey>& strokes, const MappedKeys& keys) {
    for (auto each = keys.rbegin(); each != keys.rend(); ++each)
        strokes.push_back({each->keyCode, each->flags, true, each->layout});
    for (const MappedKey& each : keys) strokes.push_back({each.keyCode, each.flags, false, each.layout});
}

// Empty for a character that cannot be typed.
std::vector<const MappedKeys*> keysOfCharacter(const KeyMap& map, const QString& character) {
    if (const MappedKeys* keys = map.find(character.toStdString())) return {keys};
    // One line break, which two keys would make two.
    if (character == QStringLiteral("\r\n")) return {};
    std::vector<const MappedKeys*> found;
    for (const char32_t code : character.toStdU32String()) {
        const MappedKeys* keys = map.find(QString::fromUcs4(&code, 1).toStdString());
        if (!keys) return {};
        found.push_back(keys);
    }
    return found;
}

QStringList partsOf(const std::string& combination) {
    return QString::fromStdString(combination).split(QStringLiteral(" + "));
}

std::optional<MappedKey> keyOfPart(const KeyMap& map, const QString& part) {
    if (const auto named = keyCodeNamed(part.toStdString())) return MappedKey{*named, 0};
    if (const MappedKeys* keys = map.find(part.toLower().toStdString())) return keys->front();
    return std::nullopt;
}

}  // namespace

std::vector<std::vector<PostedKey>> strokesOfCharacters(const KeyMap& map, const std::string& text) {
    std::vector<std::vector<PostedKey>> all;
    for (const QString& character : graphemes(QString::fromStdString(text))) {
        auto& strokes = all.emplace_back();
        for (const MappedKeys* keys : keysOfCharacter(map, character)) appendPress(strokes, *keys);
    }
    return all;
}

std::vector<PostedKey> strokesOfText(const KeyMap& map, const std::string& text) {
    std::vector<PostedKey> all;
    for (const auto& strokes : strokesOfCharacters(map, text)) all.insert(all.end(), strokes.begin(), strokes.end());
    return all;
}

std::vector<PostedKey> strokesOfReadableKeys(const KeyMap& map, const std::string& combination) {
    MappedKeys keys;
    std::uint8_t layout = 0;
    for (const QString& part : partsOf(combination)) {
        const auto key = keyOfPart(map, part);
        if (!key) continue;
        keys.push_back(*key);
        layout = std::max(layout, key->layout);
    }
    // One layout for all: a switch between them would change what is held.
    for (MappedKey& each : keys) each.layout = layout;
    std::vector<PostedKey> strokes;
    appendPress(strokes, keys);
    return strokes;
}

std::size_t unknownParts(const KeyMap& map, const std::string& combination) {
    const QStringList parts = partsOf(combination);
    return static_cast<std::size_t>(
        std::count_if(parts.begin(), parts.end(), [&](const QString& each) { return !keyOfPart(map, each); }));
}

}  // namespace vantor

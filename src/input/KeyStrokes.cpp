#include "input/KeyStrokes.h"

#include <QString>
#include <QStringList>
#include <optional>

#include "data/Graphemes.h"
#include "input/KeyNames.h"

namespace vantor {
namespace {

void appendPress(std::vector<PostedKey>& strokes, const MappedKeys& keys) {
    for (auto each = keys.rbegin(); each != keys.rend(); ++each) strokes.push_back({each->keyCode, each->flags, true});
    for (const MappedKey& each : keys) strokes.push_back({each.keyCode, each.flags, false});
}

std::optional<MappedKey> keyOfPart(const KeyMap& map, const QString& part) {
    if (const auto named = keyCodeNamed(part.toStdString())) return MappedKey{*named, 0};
    if (const MappedKeys* keys = map.find(part.toLower().toStdString())) return keys->front();
    return std::nullopt;
}

}  // namespace

std::vector<PostedKey> strokesOfText(const KeyMap& map, const std::string& text) {
    std::vector<PostedKey> strokes;
    for (const QString& character : graphemes(QString::fromStdString(text)))
        if (const MappedKeys* keys = map.find(character.toStdString())) appendPress(strokes, *keys);
    return strokes;
}

std::vector<PostedKey> strokesOfReadableKeys(const KeyMap& map, const std::string& combination) {
    MappedKeys keys;
    for (const QString& part : QString::fromStdString(combination).split(QStringLiteral(" + ")))
        if (const auto key = keyOfPart(map, part)) keys.push_back(*key);
    std::vector<PostedKey> strokes;
    appendPress(strokes, keys);
    return strokes;
}

}  // namespace vantor

#include "input/KeyMap.h"

#include <QtCore/QString>
#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "platform/KeyClasses.h"

namespace vantor {
namespace {

// Volume up, volume down, mute, Help or Insert, Home: their characters are no text.
constexpr std::array<KeyCode, 5> unprobedKeys = {72, 73, 74, 114, 115};

constexpr std::array<ModifierFlags, 8> probedModifiers = {
    0,
    modifier::shift,
    modifier::control,
    modifier::option,
    modifier::shift | modifier::control,
    modifier::shift | modifier::option,
    modifier::control | modifier::option,
    modifier::shift | modifier::control | modifier::option,
};

std::string normalForm(const std::string& text) {
    const bool ascii =
        std::all_of(text.begin(), text.end(), [](char each) { return static_cast<signed char>(each) >= 0; });
    if (ascii) return text;
    return QString::fromStdString(text).normalized(QString::NormalizationForm_C).toStdString();
}

void appendJsonText(std::string& out, const std::string& text) {
    out += '"';
    for (const char each : text) {
        const auto byte = static_cast<unsigned char>(each);
        if (each == '"' || each == '\\') {
            out.append({'\\', each});
        } else if (byte < 0x20 || byte == 0x7f) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(byte));
            out += escape.data();
        } else {
            out += each;
        }
    }
    out += '"';
}

}  // namespace

KeyMap KeyMap::learn(const KeyboardLayout& layout) {
    KeyMap map;
    map.offer("\n", {{key_code::keypadEnter, 0}});
    map.offer("\t", {{key_code::tab, 0}});
    map.probe(layout, 0);
    std::uint8_t number = 0;
    for (const auto& other : layout.others()) {
        KeyMap lesser;
        lesser.probe(*other, ++number);
        for (auto& [text, keys] : lesser.entries_)
            if (!map.find(text)) map.offer(text, std::move(keys));
    }
    return map;
}

void KeyMap::probe(const KeyboardLayout& layout, std::uint8_t number) {
    const ModifierFlags slow = layout.slowModifiers();
    for (KeyCode code = 0; code < keyCodeCount; ++code) {
        if (std::find(unprobedKeys.begin(), unprobedKeys.end(), code) != unprobedKeys.end()) continue;
        std::string first;
        for (const ModifierFlags modifiers : probedModifiers) {
            const ModifierFlags flags = modifiers | modifier::nonCoalesced;
            const auto translation = layout.translate(code, flags);
            if (!translation || translation->characters.empty() || translation->characters == first) continue;
            if (first.empty()) first = translation->characters;

            MappedKeys keys = {{code, flags, number}};
            if (translation->flags & modifier::shift) keys.push_back({key_code::shift, 0, number});
            if (translation->flags & modifier::control) keys.push_back({key_code::control, 0, number});
            if (translation->flags & modifier::option) keys.push_back({key_code::rightOption, 0, number});
            offer(translation->characters + (isKeypadKey(code) ? " [NUM]" : ""), std::move(keys), slow);
        }
    }
}

void KeyMap::offer(const std::string& text, MappedKeys keys, ModifierFlags slow) {
    const auto [place, added] = entries_.try_emplace(text);
    if (!added) {
        const MappedKeys& old = place->second;
        const bool isSlow = (keys.front().flags & slow) != 0;
        const bool wasSlow = (old.front().flags & slow) != 0;
        const bool asShort = keys.size() == old.size();
        // The last key that gives "=" wins, however long its list.
        const bool isBetter = keys.size() < old.size() || text == "=" || (asShort && wasSlow && !isSlow);
        if (!isBetter || (asShort && isSlow && !wasSlow)) return;
    }
    place->second = std::move(keys);
    if (added) textOfNormal_.emplace(normalForm(text), text);
}

const MappedKeys* KeyMap::find(const std::string& text) const {
    if (const auto exact = entries_.find(text); exact != entries_.end()) return &exact->second;
    const auto equivalent = textOfNormal_.find(normalForm(text));
    return equivalent == textOfNormal_.end() ? nullptr : &entries_.at(equivalent->second);
}

// One line with blanks, in the order of the texts' bytes and with one kind of escape: the toolkit's writer has no such
// form.
std::string keyMapJson(const KeyMap& map) {
    std::string out = "{";
    for (const auto& [text, keys] : map.entries()) {
        if (out.size() > 1) out += ", ";
        appendJsonText(out, text);
        out += ": [";
        for (std::size_t at = 0; at < keys.size(); ++at) {
            if (at > 0) out += ", ";
            out += '[' + std::to_string(keys[at].keyCode) + ", " + std::to_string(keys[at].flags);
            if (keys[at].layout) out += ", " + std::to_string(keys[at].layout);
            out += ']';
        }
        out += ']';
    }
    return out + "}";
}

}  // namespace vantor

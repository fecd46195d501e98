#include "input/ReadableKeyText.h"

#include <QtCore/QString>
#include <array>
#include <utility>

#include "input/KeyNames.h"

namespace vantor {

std::string readableKeyText(const KeyEvent& event) {
    const auto functionKey = functionKeyName(event.keyCode);
    // A named function key carries the flag by itself; its name says it.
    const auto flags = functionKey ? event.flags & ~modifier::function : event.flags;

    // Stored texts depend on this order.
    const std::array<std::pair<ModifierFlags, std::string_view>, 6> prefixes = {{
        {modifier::command, "\u2318"},
        {modifier::control, key_name::control},
        {modifier::function, "fn"},
        {modifier::capsLock, "\u21EA"},
        {modifier::option, key_name::option},
        {modifier::shift, key_name::shift},
    }};
    std::string text;
    for (const auto& [flag, name] : prefixes)
        if (flags & flag) text.append(name).append(" + ");
    if (flags & modifier::numericPad) text += "numpad ";

    if (functionKey) return text.append(*functionKey);
    if (const auto name = textKeyName(event.keyCode)) return text.append(*name);
    return text + QString::fromStdString(event.charactersWithoutModifiers).toUpper().toStdString();
}

}  // namespace vantor

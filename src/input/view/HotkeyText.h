#pragma once
// How a stored hotkey is shown. Pure.

#include <QtCore/QString>
#include <optional>
#include <string>

#include "input/PcKeyWords.h"

namespace vantor {

// Empty for a hotkey that is not set.
[[nodiscard]] inline QString hotkeyText(const std::string& stored) {
    // A tab has a width but no face.
    return stored == " " ? QString() : QString::fromStdString(stored).replace(QLatin1Char('\t'), QChar(0x21E5));
}

// "[hotkey]" for the title bar; empty while no hotkey is set.
[[nodiscard]] inline QString hotkeyHint(const std::optional<std::string>& stored) {
    const QString text = hotkeyText(stored.value_or(""));
    return text.isEmpty() ? text : QLatin1Char('[') + text + QLatin1Char(']');
}

// In words, where the keyboard has words; empty where it has signs, and while no hotkey is set.
[[nodiscard]] inline QString hotkeyWords(const std::string& stored, bool pcKeyboard) {
    return pcKeyboard ? QString::fromStdString(pcKeyWords(stored)) : QString();
}

}  // namespace vantor

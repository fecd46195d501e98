#pragma once
// How a stored hotkey is shown. Pure.

#include <QtCore/QString>
#include <optional>
#include <string>

#include "input/PcKeyWords.h"

namespace vantor {

// Empty for a hotkey that is not set.
[[nodiscard]] inline QString hotkeyText(const std::string& stored) {
    return stored == " " ? QString() : QString::fromStdString(stored);
}

// "[hotkey]" for the title bar; empty while no hotkey is set.
[[nodiscard]] inline QString hotkeyHint(const std::optional<std::string>& stored) {
    if (!stored || *stored == " ") return {};
    return QLatin1Char('[') + QString::fromStdString(*stored) + QLatin1Char(']');
}

// In words, where the keyboard has words; empty where it has signs, and while no hotkey is set.
[[nodiscard]] inline QString hotkeyWords(const std::string& stored, bool pcKeyboard) {
    return pcKeyboard ? QString::fromStdString(pcKeyWords(stored)) : QString();
}

}  // namespace vantor

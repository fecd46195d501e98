#pragma once
// The texts of the main window that depend on state. Pure.

#include <QtCore/QString>
#include <optional>
#include <string>

#include "app/GameData.h"
#include "timers/view/TimersTab.h"

namespace vantor {

// What the Timers tab says while there is no timeline.
[[nodiscard]] TimersSource::Words wordsFor(GameData::State state);
// What a tab without content of its own says.
[[nodiscard]] TimersSource::Words wordsForTab(std::size_t position);
// "[hotkey]"; empty while no hotkey is set.
[[nodiscard]] QString hotkeyHint(const std::optional<std::string>& stored);

}  // namespace vantor

#pragma once
// Undoes what a connection that is gone has left in the server's keyboard. Used by the guardian, and by Vantor where it
// has none. Knows no more than the X protocol. One thread.

#include <xcb/xcb.h>

#include "platform/linux/keys/PendingKeyboardCleanup.h"

namespace vantor {

enum class UndoVerdict { undone, unavailable };

// Waits until the server has done with the connection that posted, two seconds at most, and until it has undone all.
[[nodiscard]] UndoVerdict undoKeyboard(xcb_connection_t* connection, const PendingKeyboardCleanup& pending);

// Locks and unlocks modifiers, and locks a group where one is named. Latches are cleared: a key would use them up.
void lockModifiers(xcb_connection_t* connection, std::uint8_t affected, std::uint8_t locked,
                   std::optional<std::uint8_t> group);

}  // namespace vantor

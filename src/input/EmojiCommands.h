#pragma once
// The emotes of the quick menu, in the order of their last use, and the typing of one. Main thread.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "input/ClipboardManager.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"

namespace vantor {

struct EmojiCommand {
    std::string_view id;           // the emoji
    std::string_view command;      // as typed into the game's chat
    std::string_view description;  // in lower case

    bool operator==(const EmojiCommand&) const = default;
};

[[nodiscard]] std::span<const EmojiCommand> emojiCommands();
// By its emoji, with or without the selector of the emoji's look, or by its whole command. Null for any other text.
[[nodiscard]] const EmojiCommand* findEmojiCommand(std::string_view name);

class EmojiCommands {
public:
    EmojiCommands(ClipboardManager& clipboardManager, Defaults& defaults, const Clock& clock)
        : clipboardManager_(clipboardManager), defaults_(defaults), clock_(clock) {}

    // Whether the menu is there at all; unset reads as no.
    [[nodiscard]] bool enabled() const;
    // The most recently used first; the others keep the table's order.
    [[nodiscard]] std::vector<EmojiCommand> ordered() const;
    // Remembers the moment and types the command into the game's chat.
    void use(const EmojiCommand& command);

private:
    ClipboardManager& clipboardManager_;
    Defaults& defaults_;
    const Clock& clock_;
};

// The setting that holds the moment of a command's last use, in seconds since 1970.
[[nodiscard]] std::string emojiUsageKey(const EmojiCommand& command);

}  // namespace vantor

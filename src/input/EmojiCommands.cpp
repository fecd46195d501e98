#include "input/EmojiCommands.h"

#include <algorithm>
#include <array>

#include "data/SettingKeys.h"

namespace vantor {

namespace {

constexpr std::array<EmojiCommand, 28> table = {{
    {"🙇", "/bow @", "bow"},
    {"🥳", "/cheer @", "cheer"},
    {"😨", "/cower @", "cower"},
    {"🙅", "/crossarms", "cross your arms"},
    {"😭", "/cry", "cry"},
    {"💃", "/dance", "dance"},
    {"👯", "/dance *", "start dancing at next sync time (max 5s)"},
    {"🤦", "/upset", "be upset"},
    {"🧎", "/kneel", "kneel"},
    {"🤣", "/laugh @", "laugh"},
    {"👎", "/no @", "disagree"},
    {"☠️", "/playdead", "fake dying"},
    {"☝️", "/point @", "point"},
    {"🤔", "/ponder", "ponder"},
    {"🤘", "/rockout", "rock out!"},
    {"😢", "/sad", "be sad"},
    {"🖖", "/salute @", "salute"},
    {"🥶", "/shiver", "shiver"},
    {"🤷", "/shrug @", "shrug"},
    {"🪑", "/sit", "sit"},
    {"😴", "/sleep", "sleep"},
    {"🥱", "/stretch", "stretch"},
    {"😲", "/surprised @", "be surprised"},
    {"🗣", "/talk @", "talk"},
    {"🙏", "/ty @", "be thankful"},
    {"🤬", "/threaten @", "threaten"},
    {"👋", "/wave @", "wave"},
    {"👍", "/yes @", "agree"},
}};

std::string withoutSelector(std::string_view emoji) {
    constexpr std::string_view selector = "\uFE0F";
    return std::string(emoji.ends_with(selector) ? emoji.substr(0, emoji.size() - selector.size()) : emoji);
}

}  // namespace

std::span<const EmojiCommand> emojiCommands() { return table; }

const EmojiCommand* findEmojiCommand(std::string_view name) {
    const auto* const found = std::ranges::find_if(table, [&](const EmojiCommand& each) {
        return each.command == name || withoutSelector(each.id) == withoutSelector(name);
    });
    return found == table.end() ? nullptr : found;
}

std::string emojiUsageKey(const EmojiCommand& command) { return "emoji." + std::string(command.id) + ".time"; }

bool EmojiCommands::enabled() const { return defaults_.get<bool>(settings::enableEmojiCommands).value_or(false); }

std::vector<EmojiCommand> EmojiCommands::ordered() const {
    std::vector<std::pair<double, EmojiCommand>> used;
    used.reserve(std::size(table));
    for (const EmojiCommand& each : table)
        used.emplace_back(defaults_.get<double>(emojiUsageKey(each)).value_or(0), each);
    std::stable_sort(used.begin(), used.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    std::vector<EmojiCommand> commands;
    commands.reserve(used.size());
    for (const auto& [time, each] : used) commands.push_back(each);
    return commands;
}

void EmojiCommands::use(const EmojiCommand& command) {
    // An order that cannot be stored is only forgotten; the store itself says why.
    (void)defaults_.setValue(emojiUsageKey(command), clock_.preciseNow());
    clipboardManager_.typeString("\n" + std::string(command.command) + "\n");
}

}  // namespace vantor

#include "input/PcKeyWords.h"

#include <algorithm>
#include <array>

#include "input/KeyNames.h"

namespace vantor {

namespace {

struct Word {
    std::string_view sign;
    std::string_view word;
};

constexpr std::array<Word, 6> modifiers = {{{"\u2318", "Super (Windows key)"},
                                            {key_name::control, "Ctrl"},
                                            {"fn", "Fn"},
                                            {"\u21EA", "Caps Lock"},
                                            {key_name::option, "Alt"},
                                            {key_name::shift, "Shift"}}};

constexpr std::array<Word, 15> keys = {{{"\u2190", "Left"},
                                        {"\u2193", "Down"},
                                        {"\u2192", "Right"},
                                        {"\u2191", "Up"},
                                        {"\u2326", "Delete"},
                                        {"\u21F2", "End"},
                                        {"\u2357", "Page Down"},
                                        {"\u21F1", "Home"},
                                        {"\u2350", "Page Up"},
                                        {"\U0001F147", "Num Lock"},
                                        {key_name::enter, "Enter"},
                                        {"\u2423", "Space"},
                                        {"\u232B", "Backspace"},
                                        {"ESC", "Esc"},
                                        {"\t", "Tab"}}};

constexpr std::string_view between = " + ";
constexpr std::string_view numericPad = "numpad ";

}  // namespace

std::string pcKeyWords(std::string_view stored) {
    if (stored.find_first_not_of(" \n\r") == std::string_view::npos) return {};
    std::string words;
    for (const auto& [sign, word] : modifiers)
        if (stored.starts_with(sign) && stored.substr(sign.size()).starts_with(between)) {
            words.append(word).append(between);
            stored.remove_prefix(sign.size() + between.size());
        }
    if (stored.starts_with(numericPad)) {
        words += "Numpad ";
        stored.remove_prefix(numericPad.size());
    }
    const auto* const key = std::ranges::find(keys, stored, &Word::sign);
    return words.append(key == keys.end() ? stored : key->word);
}

}  // namespace vantor

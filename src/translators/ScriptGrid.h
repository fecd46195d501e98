#pragma once
// The characters that a script translator shows, in rows, and the three scripts. Pure; any thread.

#include <QtCore/QString>
#include <array>
#include <string_view>
#include <vector>

namespace vantor {

struct Script {
    std::string_view title;     // of its tab
    std::string_view fontName;  // the family under which its font is registered
};

inline constexpr std::array<Script, 3> scripts = {
    {{"New Krytan", "NewKrytan"}, {"Asura Script", "asura script custom"}, {"Ascalonian", "Ascalonian"}}};

inline constexpr std::string_view scriptAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
inline constexpr std::size_t charactersPerRow = 9;

// Rows of user-perceived characters, as typed; the alphabet while nothing is typed. Only the last row may be shorter.
[[nodiscard]] std::vector<std::vector<QString>> scriptRows(const QString& typed);

}  // namespace vantor

#pragma once
// Which tab stands where; see tabEntries.

#include <cstddef>

namespace vantor::tab_position {

inline constexpr std::size_t home = 0;
inline constexpr std::size_t timers = 1;
inline constexpr std::size_t translator = 2;
inline constexpr std::size_t bestiary = 3;
inline constexpr std::size_t internet = 4;
inline constexpr std::size_t support = 5;
inline constexpr std::size_t settings = 6;

}  // namespace vantor::tab_position

#pragma once
// What a layer over the embedded catalogue must hold before it is used: the embedded one may stop the program, these
// may not. Pure; any thread.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Catalogue.h"
#include "data/Decoder.h"

namespace vantor {

inline constexpr std::size_t largestLayer = 1024 * 1024;  // bytes

// The sections of a file, or one line "path: what is wrong".
[[nodiscard]] Decoded<std::vector<EventsSection>> readLayer(std::string_view body);

// Unique ids from 0 to 99; schedules whose every step has its event, that advance and that can be computed in every
// zone; a bounded number of steps. Inactive sections are checked as well. Nothing when all is well, else "path: what is
// wrong".
[[nodiscard]] std::optional<std::string> layerFault(const std::vector<EventsSection>& sections);

}  // namespace vantor

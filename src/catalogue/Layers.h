#pragma once
// One catalogue of several, section by section. Pure; any thread.

#include <cstdint>
#include <string>
#include <vector>

#include "data/Catalogue.h"

namespace vantor {

// A section above stands in the place of the one below with the same id, or after the last.
[[nodiscard]] std::vector<EventsSection> layered(std::vector<EventsSection> below,
                                                 const std::vector<EventsSection>& above);

// As they are on this UTC day: a section with dates is active from its first day to its last.
[[nodiscard]] std::vector<EventsSection> onDay(std::vector<EventsSection> sections, std::int64_t day);

// What the layer above would change, one line each without a line break: sections that are added, hidden or replaced,
// and below a replaced one the events whose times of a UTC day become others.
[[nodiscard]] std::vector<std::string> differences(const std::vector<EventsSection>& below,
                                                   const std::vector<EventsSection>& above);

}  // namespace vantor

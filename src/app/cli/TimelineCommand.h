#pragma once
// `vantor --timeline`: the computed timeline on standard output. Needs no display. One thread.

#include <ostream>
#include <string_view>
#include <vector>

#include "app/cli/CommandLine.h"
#include "data/Catalogue.h"
#include "platform/Clock.h"
#include "platform/Defaults.h"

namespace vantor {

// Filters and window length come from the stored settings; no achievement counts as completed. Returns the exit status:
// 1 for a catalogue that cannot be read or decoded, 70 for one that cannot be computed with, each with one line on
// `err`. above: what lies over the embedded catalogue.
[[nodiscard]] int runTimeline(const PrintTimeline& request, std::string_view embeddedCatalogue,
                              const Defaults& defaults, const Clock& clock, std::ostream& out, std::ostream& err,
                              const std::vector<EventsSection>& above = {});

}  // namespace vantor

#pragma once
// `vantor --set` and `vantor --get`: the stored settings from a shell. Need no display. One thread.

#include <istream>
#include <ostream>

#include "app/cli/CommandLine.h"
#include "platform/Defaults.h"

namespace vantor {

// Stores all or nothing: every key and value is checked before the first is written. A value from standard input loses
// one line break at its end. Returns the exit status: 2 for an unknown key or a value that is not of the key's type, 1
// when the store refuses; each with one line on `err`, which never repeats a value.
[[nodiscard]] int runChangeSettings(const ChangeSettings& request, Defaults& defaults, std::istream& in,
                                    std::ostream& err);

// The stored value, nothing else, and a line break. Status 1 and no output when the key is unset, 2 when it is unknown.
[[nodiscard]] int runPrintSetting(const PrintSetting& request, const Defaults& defaults, std::ostream& out,
                                  std::ostream& err);

}  // namespace vantor

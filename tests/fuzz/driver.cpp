// What libFuzzer calls.

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "Fuzz.h"

namespace vantor::fuzz {
namespace {

// A copy of standard error, since the fuzzer may close that one for what the program under test prints.
const int report = dup(STDERR_FILENO);

}  // namespace

void require(bool holds, const char* property, const std::string& detail) {
    if (holds) return;
    dprintf(report, "fuzz: does not hold: %s\n%s\n", property, detail.c_str());
    std::abort();
}

void requireLine(const std::string& line, const char* property) {
    require(!line.empty() && std::ranges::none_of(line, [](unsigned char each) { return each < 0x20; }), property,
            line);
}

}  // namespace vantor::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vantor::fuzz::run(vantor::fuzz::Input({reinterpret_cast<const char*>(data), size}));
    return 0;
}

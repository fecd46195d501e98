#include "timers/DataFault.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace vantor {

std::string oneLine(std::string text) {
    std::ranges::replace_if(text, [](char character) { return static_cast<unsigned char>(character) < 0x20; }, ' ');
    return text;
}

void stopForDataFault(const std::string& text) {
    std::fprintf(stderr, "vantor: %s\n", oneLine(text).c_str());
    std::fflush(nullptr);
    // without destructors: other threads still run, and what they use must stay alive
    std::_Exit(dataFaultStatus);
}

}  // namespace vantor

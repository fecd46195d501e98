#pragma once
// What the fuzz targets share: cutting the input into parts, and ending with a line when a property does not hold.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace vantor::fuzz {

// A copy of standard error, since the fuzzer may close that one for what the program under test prints.
inline int reportDescriptor() {
    static const int descriptor = dup(STDERR_FILENO);
    return descriptor;
}

// Ends the run as a finding.
inline void require(bool holds, const char* property, const std::string& detail = {}) {
    if (holds) return;
    dprintf(reportDescriptor(), "fuzz: does not hold: %s\n%s\n", property, detail.c_str());
    std::abort();
}

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    [[nodiscard]] std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const auto value = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return value;
    }
    // Up to the separator, which is taken as well.
    [[nodiscard]] std::string until(char separator) {
        const std::string part(rest_.substr(0, rest_.find(separator)));
        rest_.remove_prefix(part.size() < rest_.size() ? part.size() + 1 : rest_.size());
        return part;
    }
    [[nodiscard]] bool atEnd() const { return rest_.empty(); }
    [[nodiscard]] std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

inline bool holdsControlCharacter(std::string_view text) {
    for (const char each : text)
        if (static_cast<unsigned char>(each) < 0x20) return true;
    return false;
}

}  // namespace vantor::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);

#pragma once
// What the fuzz targets share: each is one function, over an input that it cuts into parts.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantor::fuzz {

// Ends the run as a finding.
void require(bool holds, const char* property, const std::string& detail = {});
// A line for a reader: some text, on one line.
void requireLine(const std::string& line, const char* property);

class Input {
public:
    explicit Input(std::string_view all) : rest_(all) {}

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

// Of each target.
void run(Input input);

}  // namespace vantor::fuzz

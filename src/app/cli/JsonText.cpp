#include "app/cli/JsonText.h"

#include <charconv>
#include <cstdio>

namespace vantor {

std::string jsonText(std::string_view text) {
    std::string json = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            json += '\\';
            json += character;
        } else if (static_cast<unsigned char>(character) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(character));
            json += escape;
        } else {
            json += character;
        }
    }
    return json += '"';
}

std::string jsonText(double number) {
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, number);
    return std::string(text, written.ptr);
}

}  // namespace vantor

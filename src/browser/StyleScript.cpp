#include "browser/StyleScript.h"

#include <QtCore/QByteArray>

namespace vantor {

namespace {

// The leading "javascript:" is a statement's label to the script engine.
constexpr std::string_view head =
    "    javascript:(function() {\n    var parent = document.getElementsByTagName('head').item(0);\n"
    "    var style = document.createElement('style');\n    style.type = 'text/css';\n"
    "    style.innerHTML = window.atob('";
constexpr std::string_view tail = "');\n    parent.appendChild(style)})()";

}  // namespace

std::string styleScript(std::string_view styleSheet) {
    // Base64 in one line. The page's own decoder yields one character for each byte, so the sheet should be ASCII.
    const std::string encoded =
        QByteArray(styleSheet.data(), static_cast<qsizetype>(styleSheet.size())).toBase64().toStdString();
    return std::string(head) + encoded + std::string(tail);
}

}  // namespace vantor

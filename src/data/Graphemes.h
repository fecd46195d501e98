#pragma once
// User-perceived characters of a text: an emoji made of several code points is one. Any thread.

#include <QtCore/QString>
#include <vector>

namespace vantor {

[[nodiscard]] std::vector<QString> graphemes(const QString& text);
[[nodiscard]] std::size_t graphemeCount(const QString& text);

}  // namespace vantor

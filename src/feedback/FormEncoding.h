#pragma once
// A list of names and values as the text of a URL query. Pure; any thread.

#include <string>
#include <utility>
#include <vector>

namespace vantor {

using QueryItems = std::vector<std::pair<std::string, std::string>>;

// UTF-8, percent-encoded with capital digits. Besides letters and digits these stand as they are: - . _ ~ ! $ ' ( ) * +
// , / : ? @ (what RFC 3986 allows in a query, without the characters that part the items: & = ;). In particular a plus
// sign stays a plus sign and a space is %20: the reader must not take "+" for a space.
[[nodiscard]] std::string encodeQueryItems(const QueryItems& items);

}  // namespace vantor

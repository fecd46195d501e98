#pragma once
// The stored form of the accounts: one compact JSON object, password by user name. Pure; any thread.

#include <map>
#include <string>
#include <string_view>

#include "data/Decoder.h"

namespace vantor {

// Text that is not JSON gives an error; JSON of another shape, or with a value that is no text, gives neither an error
// nor a value.
Decoded<std::map<std::string, std::string>> decodeAccounts(std::string_view data);

// An error when a text is not UTF-8. It names no text.
Decoded<std::string> encodeAccounts(const std::map<std::string, std::string>& accounts);

}  // namespace vantor

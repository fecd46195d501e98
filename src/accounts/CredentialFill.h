#pragma once
// What is typed into the game's login form, and in which order the panel lists the accounts. Pure; any thread.

#include <map>
#include <string>
#include <vector>

namespace vantor {

// The name, a tab and the password, which is empty for a name without an entry. The tab moves the form to its password
// field; nothing presses Return.
[[nodiscard]] inline std::string fillText(const std::map<std::string, std::string>& accounts,
                                          const std::string& username) {
    const auto found = accounts.find(username);
    return username + "\t" + (found == accounts.end() ? std::string() : found->second);
}

// Descending, by the names' bytes: "zed" stands before "amy".
[[nodiscard]] inline std::vector<std::string> accountRows(const std::map<std::string, std::string>& accounts) {
    std::vector<std::string> names;
    for (auto each = accounts.rbegin(); each != accounts.rend(); ++each) names.push_back(each->first);
    return names;
}

}  // namespace vantor

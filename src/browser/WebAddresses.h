#pragma once
// The addresses that Vantor opens in its page. Pure; any thread.

#include <array>
#include <string>
#include <string_view>

namespace vantor {

// Complete HTTPS hosts without a slash at the end.
struct WebHosts {
    std::string wiki;
    std::string videos;
    std::string search;
};

struct SearchTarget {
    std::string_view image;
    std::string_view help;
    std::string WebHosts::* host;
    std::string_view path;
};

inline constexpr std::array<SearchTarget, 3> searchTargets = {{
    {"icon.wiki", "Search on GW2 wiki", &WebHosts::wiki, "/index.php?search="},
    {"icon.youtube", "Search on YouTube", &WebHosts::videos, "/results?search_query=gw2+"},
    {"icon.google", "Search with Google", &WebHosts::search, "/search?q=gw2+"},
}};

// Spaces become plus signs and nothing else changes, unless that makes no address: then the term is percent-encoded.
[[nodiscard]] std::string searchAddress(const WebHosts& hosts, const SearchTarget& target, std::string_view term);
[[nodiscard]] std::string gameUpdatesAddress(const WebHosts& hosts);
// A page of the wiki by its title; percent-encoded but for what a title may hold in an address.
[[nodiscard]] std::string wikiPageAddress(const WebHosts& hosts, std::string_view title);
// The wiki's search for a name, percent-encoded.
[[nodiscard]] std::string lookUpAddress(const WebHosts& hosts, std::string_view name);

// Scheme, host and only the characters of RFC 3986, each percent sign with its two digits.
[[nodiscard]] bool isAddress(std::string_view text);

}  // namespace vantor

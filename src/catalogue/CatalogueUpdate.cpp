#include "catalogue/CatalogueUpdate.h"

#include <charconv>
#include <map>

#include "catalogue/Days.h"
#include "catalogue/LayerCheck.h"
#include "timers/DataFault.h"

namespace vantor {

namespace {

bool isDay(const std::string& text) { return dayNumber(text).has_value(); }

std::optional<std::int64_t> wholeNumber(const std::string& text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
    return number;
}

Decoded<CatalogueFacts> refused(std::string what) {
    return {std::nullopt, oneLine("trusted comment: " + std::move(what))};
}

}  // namespace

Decoded<CatalogueFacts> readFacts(std::string_view trustedComment) {
    std::map<std::string, std::string> words;
    while (!trustedComment.empty()) {
        const auto end = trustedComment.find_first_of(" \t");
        const std::string word(trustedComment.substr(0, end));
        trustedComment.remove_prefix(end == std::string_view::npos ? trustedComment.size() : end + 1);
        const auto equals = word.find('=');
        if (equals == std::string::npos) continue;
        if (!words.emplace(word.substr(0, equals), word.substr(equals + 1)).second)
            return refused(word.substr(0, equals) + " is there twice");
    }
    CatalogueFacts facts;
    const auto version = wholeNumber(words["catalogue"]);
    const auto schema = wholeNumber(words["schema"]);
    if (!version) return refused("no catalogue=<integer>");
    if (!schema) return refused("no schema=<integer>");
    if (*schema != catalogueSchema && *schema != catalogueSchema - 1)
        return refused("schema " + std::to_string(*schema) + " is not known");
    facts = {*version, words["date"], words["valid-until"]};
    if (!isDay(facts.validUntil)) return refused("no valid-until=<day>");
    if (!facts.date.empty() && !isDay(facts.date)) return refused("date is no day");
    return {std::move(facts), {}};
}

Decoded<CatalogueFacts> readFacts(std::string_view signature, const std::vector<PublicKey>& keys) {
    const auto read = readSignature(signature, keys);
    if (!read.value) return {std::nullopt, read.error};
    return readFacts(read.value->trustedComment);
}

Decoded<CatalogueUpdate> readUpdate(std::string_view signature, std::string_view body,
                                    const std::vector<PublicKey>& keys, std::size_t sectionsBefore) {
    const auto refuse = [](std::string what) { return Decoded<CatalogueUpdate>{std::nullopt, std::move(what)}; };
    const auto read = readSignature(signature, keys);
    if (!read.value) return refuse(read.error);
    if (body.size() > largestLayer) return refuse("document: larger than 1 MiB");
    if (!isSigned(body, *read.value, keys)) return refuse("signature: is not this document's");
    auto facts = readFacts(read.value->trustedComment);
    if (!facts.value) return refuse(facts.error);
    auto sections = readLayer(body);
    if (!sections.value) return refuse(sections.error);
    if (sections.value->size() * 10 < sectionsBefore * 8)
        return refuse("document: " + std::to_string(sections.value->size()) + " sections in place of " +
                      std::to_string(sectionsBefore));
    return {CatalogueUpdate{*std::move(facts.value), *std::move(sections.value)}, {}};
}

}  // namespace vantor

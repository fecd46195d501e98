#pragma once
// One signed update of the catalogue, checked. Pure; any thread.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/MinisignSignature.h"
#include "data/Catalogue.h"
#include "data/Decoder.h"

namespace vantor {

// The format that this program writes of; the one before is read as well. A newer one lies in a path of its own.
inline constexpr std::int64_t catalogueSchema = 1;

// What is known of a catalogue beside its sections. Days as "2026-10-01", empty where they are not known.
struct CatalogueFacts {
    std::int64_t version = 0;
    std::string date{};  // of its times
    std::string validUntil{};

    bool operator==(const CatalogueFacts&) const = default;
};

template <>
struct Fields<CatalogueFacts> {
    static constexpr auto table =
        std::tuple(Field{"catalogue", &CatalogueFacts::version}, Field{"date", &CatalogueFacts::date},
                   Field{"valid-until", &CatalogueFacts::validUntil});
};

struct CatalogueUpdate {
    CatalogueFacts facts;
    std::vector<EventsSection> sections;

    bool operator==(const CatalogueUpdate&) const = default;
};

// Of a trusted comment: catalogue=<integer> schema=<n> valid-until=<day>, and date=<day> where the times are of another
// day than the signature's reader would guess. Words that are not known are passed over.
Decoded<CatalogueFacts> readFacts(std::string_view trustedComment);

// The facts alone, which say whether the body is worth fetching: its signature is not looked at here.
Decoded<CatalogueFacts> readFacts(std::string_view signature, const std::vector<PublicKey>& keys);

// Whole: signature, facts, sections. sectionsBefore: of the catalogue that it would replace; fewer than 80 % of them
// are refused.
Decoded<CatalogueUpdate> readUpdate(std::string_view signature, std::string_view body,
                                    const std::vector<PublicKey>& keys, std::size_t sectionsBefore);

}  // namespace vantor

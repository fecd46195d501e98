// The one decoder on any bytes, as each record of the catalogue, the bestiary and the web API; the first byte picks it.
// A document decodes or its one-line error names the place; what decodes is written and read back equal; a required key
// that goes is missed by its name, an optional one is simply absent. A catalogue that decodes gives a sorted timeline
// or a fault, in bounded work. A layer over the embedded one is taken only if it can be computed with, and as an update
// only with its maker's signature.

#include <algorithm>

#include "Fuzz.h"
#include "catalogue/CatalogueUpdate.h"
#include "catalogue/LayerCheck.h"
#include "catalogue/Layers.h"
#include "data/Catalogue.h"
#include "data/Decoder.h"
#include "data/WebApi.h"
#include "fake/SignedCatalogue.h"
#include "timers/Timeline.h"

namespace vantor::fuzz {
namespace {

// The record once without each of its keys.
template <FieldRecord Record>
void dropKeys(const Record& record) {
    const auto drop = [&](const auto& field) {
        QJsonObject without = json::write(record).toObject();
        without.remove(QString::fromUtf8(field.key.data(), static_cast<qsizetype>(field.key.size())));
        const auto decoded = decodeJson<Record>(json::serialise(without));
        if constexpr (requires(Record bare) { (bare.*field.member).reset(); }) {
            Record bare = record;
            (bare.*field.member).reset();
            require(decoded.value == bare, "a record without an optional key is the record without it");
        } else {
            require(decoded.error == std::string(field.key) + ": missing", "a missing key is named", decoded.error);
        }
    };
    std::apply([&](const auto&... fields) { (drop(fields), ...); }, Fields<Record>::table);
}

void schedule(const std::vector<EventsSection>& sections, std::uint8_t choice) {
    const bool all = (choice & 1) != 0;
    const auto result = computeTimeline(sections, {}, {all, true, all, all, all, all, all}, (choice - 128) * 450);
    if (const auto* timeline = std::get_if<Timeline>(&result))
        require(std::ranges::is_sorted(timeline->events, {}, &TimelineEvent::id), "the timeline is sorted");
    else
        require(!describe(std::get<TimelineFault>(result)).empty(), "a fault says what is wrong");
}

template <typename Element>
void decode(std::string_view body, std::uint8_t choice) {
    const auto decoded = decodeJson<std::vector<Element>>(body);
    if (!decoded.value) return requireLine(decoded.error, "an error is one line");
    require(decoded.error.empty(), "a value or an error, never both", decoded.error);
    const std::string written = encodeJson(*decoded.value);
    require(decodeJson<std::vector<Element>>(written).value == decoded.value, "what is written reads back", written);
    if constexpr (FieldRecord<Element>)
        if (!decoded.value->empty()) dropKeys(decoded.value->front());
    if constexpr (std::is_same_v<Element, EventsSection>) schedule(*decoded.value, choice);
}

// As the player's file: what is taken can be computed with over another catalogue, in every zone, and never stops it.
void layer(std::string_view body, std::uint8_t choice) {
    const auto read = readLayer(body);
    if (!read.value) return requireLine(read.error, "an error is one line");
    EventsSection section;
    section.id = 3;
    section.active = true;
    section.segments.emplace_back().id = 1;
    section.sequences.pattern.push_back({1, 60});
    const std::vector embedded{section};
    const auto sections = onDay(layered(embedded, *read.value), choice * 100);
    const auto result = computeTimeline(sections, {}, {true, true, true, true, true, true, true}, (choice - 128) * 390);
    require(std::holds_alternative<Timeline>(result), "what is taken can be computed with");
    for (const std::string& line : differences(embedded, *read.value)) requireLine(line, "a difference is one line");
}

// As an update: the first line is the trusted comment, which a key signs, the rest the document. Once as it is and once
// as somebody else's.
void update(std::string_view text, std::uint8_t choice) {
    static const CatalogueSigner maker(1), stranger(2);
    const auto end = std::min(text.find('\n'), text.size());
    const std::string_view body = text.substr(std::min(end + 1, text.size()));
    const std::string comment(text.substr(0, end));
    const auto read = readUpdate(maker.sign(body, comment), body, {maker.key()}, choice % 2);
    if (!read.value) requireLine(read.error, "an error is one line");
    if (read.value) layer(body, choice);
    require(!readUpdate(stranger.sign(body, comment), body, {maker.key()}, 0).value, "a stranger is not believed");
    require(!readUpdate(text, body, {maker.key()}, 0).value, "what is not signed is not believed");
}

constexpr auto kinds = std::array{decode<EventsSection>,
                                  decode<BeastCategory>,
                                  decode<AchievementCompletition>,
                                  decode<Account>,
                                  decode<Achievement>,
                                  decode<AchievementCategory>,
                                  decode<Raid>,
                                  decode<std::string>,
                                  layer,
                                  update};

}  // namespace

void run(Input input) {
    const std::uint8_t kind = input.byte();
    const std::uint8_t choice = input.byte();
    kinds[kind % kinds.size()](input.rest(), choice);
}

}  // namespace vantor::fuzz

// The one decoder on any bytes, as each record of the catalogue, the bestiary and the web API; the first byte picks it.
// A document decodes or its one-line error names the place; what decodes is written and read back equal; a required key
// that goes is missed by its name, an optional one is simply absent. A catalogue that decodes gives a sorted timeline
// or a fault, in bounded work.

#include <algorithm>

#include "Fuzz.h"
#include "data/Catalogue.h"
#include "data/Decoder.h"
#include "data/WebApi.h"
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

constexpr auto kinds = std::array{decode<EventsSection>, decode<BeastCategory>, decode<AchievementCompletition>,
                                  decode<Account>,       decode<Achievement>,   decode<AchievementCategory>,
                                  decode<Raid>,          decode<std::string>};

}  // namespace

void run(Input input) {
    const std::uint8_t kind = input.byte();
    const std::uint8_t choice = input.byte();
    kinds[kind % kinds.size()](input.rest(), choice);
}

}  // namespace vantor::fuzz

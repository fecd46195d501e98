// The one decoder on any bytes, as each record of the catalogue, the bestiary and the web API. The first byte picks the
// record. A document decodes or its one-line error names the place; what decodes is written and read back equal; a
// required key that goes is missed by its name, an optional one is simply absent, an unknown one is ignored. A
// catalogue that decodes gives a sorted timeline or a fault, in bounded work.

#include <algorithm>

#include "Finding.h"
#include "data/Catalogue.h"
#include "data/Decoder.h"
#include "data/WebApi.h"
#include "timers/Timeline.h"

namespace vantor::fuzz {
namespace {

template <typename Member>
struct IsOptional : std::false_type {};
template <typename Member>
struct IsOptional<std::optional<Member>> : std::true_type {};

template <typename Record>
std::string write(const std::vector<Record>& records) {
    return encodeJson(records);
}

// The first record once without each of its keys.
template <FieldRecord Record>
void dropKeys(const Record& record) {
    const QJsonObject whole = json::write(record).toObject();
    const auto drop = [&](const auto& field) {
        QJsonObject without = whole;
        without.remove(QString::fromUtf8(field.key.data(), static_cast<qsizetype>(field.key.size())));
        const auto decoded = decodeJson<Record>(json::serialise(without));
        if constexpr (IsOptional<std::remove_cvref_t<decltype(record.*field.member)>>::value) {
            Record bare = record;
            (bare.*field.member).reset();
            require(decoded.value == bare, "a record without an optional key is the record without it");
        } else {
            require(!decoded.value && decoded.error == std::string(field.key) + ": missing",
                    "a required key that is missing is named", decoded.error);
        }
    };
    std::apply([&](const auto&... fields) { (drop(fields), ...); }, Fields<Record>::table);

    QJsonObject more = whole;
    more.insert(QStringLiteral("a key of next year"), QJsonArray{1, QJsonObject()});
    require(decodeJson<Record>(json::serialise(more)).value == record, "an unknown key is ignored");
}

void schedule(const std::vector<EventsSection>& sections, std::uint8_t choice) {
    const bool all = (choice & 1) != 0;
    const TimerFilters filters{all, true, all, all, all, all, all};
    const auto result = computeTimeline(sections, {}, filters, (choice - 128) * 450);
    if (const auto* timeline = std::get_if<Timeline>(&result)) {
        require(std::ranges::is_sorted(timeline->events, {}, &TimelineEvent::id), "the timeline is sorted");
        for (const TimelineEvent& event : timeline->events)
            require(event.scheduled != nullptr, "an occurrence is of an event");
    } else {
        require(!describe(std::get<TimelineFault>(result)).empty(), "a fault says what is wrong");
    }
}

template <typename Element>
void decodeList(std::string_view body, std::uint8_t choice) {
    using List = std::vector<Element>;
    const auto decoded = decodeJson<List>(body);
    require(decoded.value.has_value() == decoded.error.empty(), "a value or an error, never both or none",
            decoded.error);
    require(!holdsControlCharacter(decoded.error), "an error is one line", decoded.error);
    if (!decoded.value) {
        if constexpr (FieldRecord<Element>) {
            const auto single = decodeJson<Element>(body);
            require(single.value.has_value() == single.error.empty(), "a value or an error for one record",
                    single.error);
            if (single.value) dropKeys(*single.value);
        }
        return;
    }
    const std::string written = encodeJson(*decoded.value);
    const auto again = decodeJson<List>(written);
    require(again.value == decoded.value, "what is written reads back equal", written + again.error);
    require(encodeJson(*again.value) == written, "it is written alike the second time", written);
    if constexpr (FieldRecord<Element>)
        if (!decoded.value->empty()) dropKeys(decoded.value->front());
    if constexpr (std::is_same_v<Element, EventsSection>) schedule(*decoded.value, choice);
}

void decodeAs(std::uint8_t kind, std::string_view body, std::uint8_t choice) {
    switch (kind % 8) {
        case 0:
            return decodeList<EventsSection>(body, choice);
        case 1:
            return decodeList<BeastCategory>(body, choice);
        case 2:
            return decodeList<AchievementCompletition>(body, choice);
        case 3:
            return decodeList<Account>(body, choice);
        case 4:
            return decodeList<Achievement>(body, choice);
        case 5:
            return decodeList<AchievementCategory>(body, choice);
        case 6:
            return decodeList<Raid>(body, choice);
        default:
            return decodeList<std::string>(body, choice);
    }
}

}  // namespace
}  // namespace vantor::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) { return vantor::fuzz::reportDescriptor() < 0 ? 1 : 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vantor::fuzz::Input input(data, size);
    const std::uint8_t kind = input.byte();
    const std::uint8_t choice = input.byte();
    vantor::fuzz::decodeAs(kind, input.rest(), choice);
    return 0;
}

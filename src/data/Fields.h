#pragma once
// The field table of a record: which member each JSON key fills. One table serves decoding and encoding; whether a key
// is required follows from the member's type (std::optional is not). Values, any thread.

#include <string_view>
#include <tuple>

namespace vantor {

template <typename Record, typename Member>
struct Field {
    std::string_view key;
    Member Record::* member;

    constexpr Field(std::string_view jsonKey, Member Record::* pointer) : key(jsonKey), member(pointer) {}
};

// Specialised beside each record, with `static constexpr auto table = std::tuple(Field{...}, ...)`.
template <typename Record>
struct Fields;

template <typename T>
concept FieldRecord = requires { Fields<T>::table; };

}  // namespace vantor

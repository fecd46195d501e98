#pragma once
// One choice of a picker: what is stored, what is read, and an image if it has one. A value.

#include <QtCore/QString>
#include <string>

namespace vantor {

struct GW2PickerOption {
    std::string id;
    QString text;
    QString image{};

    bool operator==(const GW2PickerOption&) const = default;
};

}  // namespace vantor

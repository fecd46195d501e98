#pragma once
// Says why a list is empty and leads to what helps. Main thread.

#include <functional>

#include "timers/EmptyList.h"
#include "ui/EmptyState.h"

namespace vantor {

// Where an empty list can lead; what is left out is not offered.
struct EmptyListActions {
    std::function<void()> openKeyField;
    std::function<void()> openFilters;
    std::function<void()> clearSearch;
    std::function<void()> tryAgain;
    std::function<void()> showWithoutProgress{};
};

class EmptyListView : public EmptyState {
public:
    EmptyListView(EmptyListActions actions, QWidget* parent);

    void say(const EmptyWords& words);

private:
    [[nodiscard]] const std::function<void()>& actionOf(EmptyRemedy remedy) const;

    EmptyListActions actions_;
    EmptyWords words_;
};

}  // namespace vantor

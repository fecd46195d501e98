#include "timers/view/EmptyListView.h"

#include <utility>

namespace vantor {

EmptyListView::EmptyListView(EmptyListActions actions, QWidget* parent)
    : EmptyState(parent), actions_(std::move(actions)) {}

void EmptyListView::say(const EmptyWords& words) {
    if (words == std::exchange(words_, words)) return;
    setText(QString::fromStdString(words.title), QString::fromStdString(words.sentence));
    const std::function<void()>& action = actionOf(words.remedy);
    setAction(action ? QString::fromStdString(words.action) : QString(), action);
    const std::function<void()>& other = actionOf(words.otherRemedy);
    setOtherAction(other ? QString::fromStdString(words.otherAction) : QString(), other);
}

const std::function<void()>& EmptyListView::actionOf(EmptyRemedy remedy) const {
    static const std::function<void()> none;
    switch (remedy) {
        case EmptyRemedy::openKeyField:
            return actions_.openKeyField;
        case EmptyRemedy::showWithoutProgress:
            return actions_.showWithoutProgress;
        case EmptyRemedy::openFilters:
            return actions_.openFilters;
        case EmptyRemedy::clearSearch:
            return actions_.clearSearch;
        case EmptyRemedy::tryAgain:
            return actions_.tryAgain;
        case EmptyRemedy::none:
            break;
    }
    return none;
}

}  // namespace vantor

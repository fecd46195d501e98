#pragma once
// The Bestiary tab: the categories, their families and a search. Pressing a family looks it up. Main thread.

#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Subscription.h"
#include "data/Catalogue.h"
#include "data/WebApi.h"
#include "timers/Bestiary.h"
#include "timers/DataState.h"
#include "timers/view/EmptyListView.h"
#include "ui/GW2TextField.h"
#include "ui/VerticalScroller.h"

namespace vantor {

class BestiarySectionView;

// What the tab is made of; what it refers to outlives the tab.
struct BestiaryNeeds {
    std::function<std::shared_ptr<const std::vector<BeastCategory>>()> categories;
    std::function<std::shared_ptr<const std::vector<AchievementCompletition>>()> progress;  // of the bestiary
    std::function<DataState()> state;                                                       // of the bestiary
    std::function<Subscription(std::function<void()> handler)> observe;
    std::function<void(const std::string& family)> lookUp;
    // `clearSearch` is the tab's own.
    EmptyListActions emptyActions;
    std::function<bool()> progressKnown = [] { return true; };
};

class BestiaryView : public QWidget {
public:
    BestiaryView(BestiaryNeeds needs, QWidget* parent);

    // Cheap when nothing shown became different.
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showSections(const ProgressById& progress);

    BestiaryNeeds needs_;
    std::shared_ptr<const std::vector<BeastCategory>> categories_;
    GW2TextField* search_;
    VerticalScroller* scroller_;
    QWidget* column_;
    EmptyListView* empty_;
    std::vector<BestiarySectionView*> sections_;
    Subscription data_;
};

}  // namespace vantor

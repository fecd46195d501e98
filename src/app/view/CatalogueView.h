#pragma once
// What the settings page of the timers says of the catalogue: where the event times come from, and whether festivals
// have dates. Main thread.

#include <QtWidgets/QWidget>
#include <functional>
#include <memory>

#include "base/Subscription.h"
#include "catalogue/LayeredCatalogue.h"
#include "platform/Defaults.h"
#include "ui/TextBlock.h"

namespace vantor {

// All of it outlives the views.
struct CatalogueNeeds {
    std::function<std::shared_ptr<const CatalogueStatus>()> status;
    std::function<Subscription(std::function<void()> handler)> observe;  // of the status, among other things
    std::function<void()> readPlayerFiles;
    std::function<void()> rollBack;
    Defaults& defaults;
};

class CatalogueView : public QWidget {
public:
    CatalogueView(CatalogueNeeds needs, QWidget* parent);

private:
    void refresh();

    CatalogueNeeds needs_;
    TextBlock* version_;
    TextBlock* files_;
    TextBlock* faults_;
    QWidget* back_;
    Subscription changed_;
};

// Beside the switch for special events; hidden where it has nothing to say.
class FestivalsHint : public TextBlock {
public:
    FestivalsHint(const CatalogueNeeds& needs, QWidget* parent);

private:
    Subscription changed_;
};

}  // namespace vantor

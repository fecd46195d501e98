#pragma once
// One category of the bestiary: a title that folds it, and its families in as many columns as fit. Main thread.

#include <QtWidgets/QWidget>
#include <functional>
#include <string>
#include <vector>

#include "timers/Bestiary.h"
#include "timers/view/BestiaryFamilyView.h"

namespace vantor {

class Collapse;

class BestiarySectionView : public QWidget {
public:
    BestiarySectionView(const BestiarySection& whole, const std::function<void(const std::string& family)>& lookUp,
                        QWidget* parent);

    // whole: the category as it is by now. found: its families that are to be seen; nothing hides the category.
    void show(const BestiarySection& whole, const BestiarySection* found);

private:
    class Grid;

    Collapse* collapse_;
    Grid* grid_;
};

}  // namespace vantor

#pragma once
// A quiet strip with the first steps of a new player, ticked as they are done; each leads to the control that does it.
// It hides itself once all are done. Main thread.

#include <QtWidgets/QWidget>
#include <array>
#include <functional>

#include "app/FirstSteps.h"
#include "ui/Pressable.h"

namespace vantor {

class FirstStepsView : public QWidget {
public:
    FirstStepsView(Defaults& defaults, const std::function<void(FirstStep)>& lead, QWidget* parent);

    // Where it belongs; shown there while something is left to do.
    void setWanted(bool wanted);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class StepButton;

    void follow();

    Defaults& defaults_;
    std::array<StepButton*, firstSteps.size()> buttons_{};
    bool wanted_ = false;
    Subscription settings_;
};

}  // namespace vantor

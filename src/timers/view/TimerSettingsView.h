#pragma once
// The settings page of the timers: which events enter the timeline and how far ahead the timers look. Main thread.

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>
#include <functional>

#include "platform/Defaults.h"

namespace vantor {

class TextBlock;

class TimerSettingsView : public QWidget {
public:
    // reloadEvents: computes the timeline again from what is loaded.
    TimerSettingsView(Defaults& defaults, std::function<void()> reloadEvents, QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TextBlock* updated_;
    QTimer updatedGoes_;
};

}  // namespace vantor

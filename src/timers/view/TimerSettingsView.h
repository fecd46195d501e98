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
    // What others put on the page, or nothing.
    struct More {
        std::function<QWidget*(QWidget* page)> belowFilters;
        std::function<QWidget*(QWidget* page)> atEnd;
    };

    // reloadEvents: computes the timeline again from what is loaded.
    TimerSettingsView(Defaults& defaults, std::function<void()> reloadEvents, QWidget* parent, const More& more = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TextBlock* updated_;
    QTimer updatedGoes_;
};

}  // namespace vantor

#pragma once
// The main window's content: title bar, tab row, and the content of the selected tab. Main thread.

#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QWidget>

#include "app/AppObserver.h"
#include "app/view/TitleBar.h"
#include "timers/view/TimersTab.h"
#include "ui/QuietText.h"

namespace vantor {

class ContentView : public QWidget {
public:
    ContentView(AppObserver& appObserver, QWidget* parent);

private:
    void showTab();
    void showTitle();
    void followSetting(const std::string& key);

    AppObserver& appObserver_;
    TitleBar* titleBar_;
    QStackedWidget* content_;
    QuietText* quiet_;
    TimersTab* timers_;
    Subscription selection_;
    Subscription data_;
    Subscription settings_;
};

}  // namespace vantor

#pragma once
// The main window's content: title bar, tab row, and the content of the selected tab, which is made when it is first
// shown. Main thread.

#include <QtGui/QPixmap>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QWidget>
#include <array>

#include "app/ApiKeyField.h"
#include "app/AppObserver.h"
#include "app/view/FirstStepsView.h"
#include "app/view/TabPages.h"
#include "app/view/TabRow.h"
#include "app/view/TitleBar.h"
#include "browser/view/WebPanel.h"
#include "timers/view/WatchedFeed.h"

namespace vantor {

class ContentView : public QWidget {
public:
    ContentView(AppObserver& appObserver, const ViewNeeds& needs, WatchedFeed& watched, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showTab();
    void showTitle();
    [[nodiscard]] QWidget* makePage(std::size_t position);
    [[nodiscard]] TabLinks links();
    void openSettings(SettingsView::Page page);
    void lead(FirstStep step);
    void openPage(const std::string& address);

    AppObserver& appObserver_;
    const ViewNeeds& needs_;
    ApiKeyField apiKey_;
    TabRow* tabRow_;
    FirstStepsView* firstSteps_;
    TitleBar* titleBar_;
    QStackedWidget* content_;
    // By position; the two tabs of the shared page have one.
    std::array<QWidget*, tabEntries.size()> pages_{};
    WebPanel* web_ = nullptr;
    TimersView* timersView_ = nullptr;
    SettingsView* settingsView_ = nullptr;
    QPixmap ground_;
    Subscription selection_;
    Subscription settings_;
    Subscription badge_;
};

}  // namespace vantor

#pragma once
// The overlay itself: the ink panel with the content on it. Main thread.

#include <QtGui/QPixmap>

#include "app/AppObserver.h"
#include "app/view/ViewNeeds.h"
#include "timers/view/WatchedFeed.h"
#include "ui/OverlayWindow.h"

namespace vantor {

class MainWindow : public OverlayWindow {
public:
    MainWindow(AppObserver& appObserver, const ViewNeeds& needs, WatchedFeed& watched, Prepare prepare);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap panel_;
};

}  // namespace vantor

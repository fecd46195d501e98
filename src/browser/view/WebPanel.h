#pragma once
// The two tabs that show the one page: the browser with its searches, and the game updates. Main thread.

#include <QtWidgets/QWidget>

#include "browser/WebAddresses.h"
#include "browser/WebViewStore.h"
#include "browser/view/WebView.h"

namespace vantor {

class WebPanel : public QWidget {
public:
    enum class Tab { none, gameUpdates, internet };

    WebPanel(PageSource source, WebViewStore& store, WebHosts hosts, QWidget* parent);

    // Which of the two tabs is shown now. The game updates are loaded each time that their tab appears.
    void show(Tab tab);

private:
    QWidget* makeRow();

    WebViewStore& store_;
    WebHosts hosts_;
    QWidget* row_;
    WebView* web_;
    Tab shown_ = Tab::none;
};

}  // namespace vantor

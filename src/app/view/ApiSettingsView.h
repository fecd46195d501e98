#pragma once
// What an API key is, why to use one and how to get one, in three sections that open and close. Main thread.

#include <QtWidgets/QWidget>
#include <functional>

#include "ui/Collapse.h"

namespace vantor {

using OpenLink = std::function<void(const QString& address)>;

// With their schemes, and without a slash at the end.
struct HelpHosts {
    QString wiki;         // the game's wiki
    QString accountSite;  // where the game's maker lets players make keys
};

class ApiSettingsView : public QWidget {
public:
    ApiSettingsView(const HelpHosts& hosts, OpenLink openLink, QWidget* parent);

    // Opens the section that says how to get a key.
    void unfoldHowToGetOne() { howToGetOne_->setExpanded(true); }

private:
    Collapse* howToGetOne_;
};

}  // namespace vantor

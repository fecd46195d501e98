#pragma once
// The row of the seven tabs. Main thread.

#include <QtWidgets/QWidget>
#include <array>

#include "app/Tabs.h"
#include "ui/TabElement.h"

namespace vantor {

class TabRow : public QWidget {
public:
    TabRow(Tabs& tabs, QWidget* parent);

    // A count on the tab's entry; empty for none.
    void setBadge(std::size_t position, const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showSelection();

    Tabs& tabs_;
    std::array<TabElement*, tabEntries.size()> elements_{};
    Subscription selection_;
};

}  // namespace vantor

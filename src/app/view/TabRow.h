#pragma once
// The row of the seven tabs. Main thread.

#include <QtWidgets/QWidget>
#include <array>

#include "app/Tabs.h"
#include "ui/TabElement.h"
#include "ui/TabMark.h"

namespace vantor {

class TabRow : public QWidget {
public:
    TabRow(Tabs& tabs, QWidget* parent);

    // A count on the tab's entry; empty for none.
    void setBadge(std::size_t position, const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showSelection();
    // Where not every text has room, only the chosen tab shows its own.
    void fit();
    [[nodiscard]] int sum(int (TabElement::*of)() const) const;

    Tabs& tabs_;
    std::array<TabElement*, tabEntries.size()> elements_{};
    TabMark* mark_;
    Subscription selection_;
};

}  // namespace vantor

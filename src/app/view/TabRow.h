#pragma once
// The row of the seven tabs. The chosen one is gold over a red line that fades at both ends. Main thread.

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <array>

#include "app/Tabs.h"

namespace vantor {

class TabRow : public QWidget {
public:
    TabRow(Tabs& tabs, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showSelection();

    Tabs& tabs_;
    std::array<QAbstractButton*, tabEntries.size()> buttons_{};
    Subscription selection_;
};

}  // namespace vantor

#pragma once
// The status menu where there is no status bar: the same entries, opened by the right button on the floating icon, in
// the overlay's own look. It closes before an entry acts. Main thread.

#include <QtGui/QPixmap>
#include <QtWidgets/QMenu>
#include <vector>

#include "platform/StatusItem.h"

namespace vantor {

class IconMenu : public QMenu {
public:
    IconMenu(const std::vector<MenuEntry>& entries, QWidget* parent);

    // Shows the entries of this moment at a place on the screen; the menu ends with its closing.
    static void open(const std::vector<MenuEntry>& entries, QPoint place);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    IconMenu(const QString& title, QWidget* parent);
    void fill(const std::vector<MenuEntry>& entries);

    QPixmap background_;
};

}  // namespace vantor

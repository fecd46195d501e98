#pragma once
// The red line below the chosen tab of a row; it glides to the next one. Owned by the row; main thread.

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include "ui/Motion.h"

namespace vantor {

class TabMark : public QWidget {
public:
    explicit TabMark(QWidget* row);

    // Below this tab of the row from now on, also when the row lays it out anew.
    void moveBelow(QWidget* tab);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QPointer<QWidget> tab_;
    QRect from_;
    Motion way_;
};

}  // namespace vantor

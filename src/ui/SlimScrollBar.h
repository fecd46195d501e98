#pragma once
// A narrow scroll bar in the look's gold over the ink. Main thread.

#include <QtWidgets/QScrollBar>

namespace vantor {

class SlimScrollBar : public QScrollBar {
public:
    explicit SlimScrollBar(QWidget* parent);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantor

#pragma once
// Shows a column that is taller than its place: slim gold scroll bar, soft fades where it is cut. Main thread.

#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>

namespace vantor {

// A narrow scroll bar in the look's gold over the ink. Main thread.
class SlimScrollBar : public QScrollBar {
public:
    explicit SlimScrollBar(QWidget* parent);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

class VerticalScroller : public QScrollArea {
public:
    explicit VerticalScroller(QWidget* parent);

    // Adopted; as wide as the place, and as tall as it needs at that width: by heightForWidth, or a fixed height.
    void setContent(QWidget* content);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fade();

    QWidget* fades_;
};

}  // namespace vantor

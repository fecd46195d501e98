#pragma once
// A sunken panel: darker background with a shadow inside its edges. Main thread.

#include <QtWidgets/QWidget>

class QPainter;

namespace vantor {

class ShadowInset : public QWidget {
public:
    explicit ShadowInset(QWidget* parent);

    // Adopted; fills the panel but for its margin.
    void setContent(QWidget* content);

    static void paint(QPainter& painter, const QRectF& frame);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace vantor

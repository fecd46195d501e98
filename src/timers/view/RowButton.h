#pragma once
// The small square control of a timers row: an image on a dark background. Main thread.

#include <QtWidgets/QAbstractButton>

namespace vantor {

class RowButton : public QAbstractButton {
public:
    RowButton(QString image, QWidget* parent);

    void setImage(const QString& image);
    // What it does and to which event, for whoever cannot see the row.
    void setSpokenName(const QString& name);
    // Without background and hairline until it is hovered.
    void setPlain(bool plain) { plain_ = plain; }

    // The 32 x 32 control and the room for its focus ring.
    [[nodiscard]] QSize sizeHint() const override { return {38, 38}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    virtual void paintBackground(QPainter& painter, const QRectF& background) const;

private:
    QString image_;
    bool plain_ = false;
};

}  // namespace vantor

#pragma once
// A button that is one image on a dark ground: hover lightens, pressing moves it down by 1 px, focus is a ring. Main
// thread.

#include <QtCore/QString>
#include <QtWidgets/QAbstractButton>

namespace vantor {

class ImageButton : public QAbstractButton {
public:
    // `hoverImage` is shown while the pointer is over it. `name` is what a screen reader says, and the tool tip.
    ImageButton(QString imageName, QString hoverImage, const QString& name, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString image_;
    QString hoverImage_;
};

}  // namespace vantor

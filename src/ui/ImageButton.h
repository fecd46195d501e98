#pragma once
// A button that is one image: hover lightens, pressing moves it down by 1 px, focus is a ring. Main thread.

#include <QtCore/QString>

#include "ui/Pressable.h"

namespace vantor {

class ImageButton : public Pressable {
public:
    // `hoverImage` is shown while the pointer is over it. `name` is what a screen reader says, and the tool tip.
    ImageButton(QString imageName, QString hoverImage, const QString& name, QWidget* parent);

    void setImages(QString imageName, QString hoverImage);
    // Of the image, at the text scale of 1; the control is 16 px wider. 20 at first.
    void setImageSize(int pixels);
    // Without a background of its own.
    void setQuiet(bool quiet);
    // On a drawn background; the images then fill it.
    void setGround(QString image);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int pictureSize() const;

    QString image_;
    QString hoverImage_;
    QString background_;
    int imageSize_ = 20;
    bool quiet_ = false;
};

}  // namespace vantor

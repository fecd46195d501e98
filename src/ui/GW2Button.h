#pragma once
// A button with a text, and an image if it has one. Main thread.

#include "ui/GW2ButtonStyle.h"
#include "ui/Pressable.h"

namespace vantor {

class GW2Button : public Pressable {
public:
    GW2Button(const QString& text, QWidget* parent);
    GW2Button(const QString& text, QString image, GW2ButtonStyle::Kind kind, QWidget* parent);

    // Smaller: for what stands beside something more important.
    void setFootnote(bool footnote);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QFont textFont() const;

    GW2ButtonStyle style_;
    QString image_;
    bool footnote_ = false;
};

}  // namespace vantor

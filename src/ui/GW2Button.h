#pragma once
// A button with a text, and an image if it has one. Main thread.

#include <QtGui/QPainter>

#include "ui/ControlState.h"
#include "ui/Pressable.h"

namespace vantor {

// The background of buttons: dark, worn, with a hairline of gold; red where a button is the one to press. Main thread.
class GW2ButtonStyle {
public:
    enum class Kind { standard, primary, quiet };

    explicit GW2ButtonStyle(Kind kind = Kind::standard) : kind_(kind) {}

    // The focus ring stands 2 px outside the frame.
    void paintBackground(QPainter& painter, const QRectF& frame, const ControlState& state) const;
    [[nodiscard]] QColor textColour(const ControlState& state) const;

private:
    Kind kind_;
};

// What is disabled is drawn so.
inline constexpr double disabledOpacity = 0.45;

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

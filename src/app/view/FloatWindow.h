#pragma once
// A floating window that never takes the focus. While it holds nothing it stays mapped, is transparent and lets every
// click through to the game; what it holds decides its size, from the top left corner. Where the screen ends one
// without a fixed place gives way for as long as it must. Main thread.

#include <optional>

#include "ui/OverlayWindow.h"

namespace vantor {

class FloatWindow : public OverlayWindow {
public:
    FloatWindow(const QString& title, QSize size, bool movable, Prepare prepare);

    // Fills the window from now on; the window owns it. Until it asks for a size the window holds nothing.
    void setContent(QWidget* content);
    // What the content needs now. Empty: the window holds nothing and keeps its frame.
    void fit(QSize size);
    // Where its top left corner belongs from now on, whatever it holds. Without such a place it grows from where it
    // stands, which the toolkit knows only once the window manager has told.
    void standAt(QPoint corner);
    // What it holds keeps its size.
    void place(const QRect& frame) override;

protected:
    [[nodiscard]] QRect placedFrame() const override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QRect screenAt(const QRect& frame) const;
    void layOut();
    void letClicksThrough(bool through);

    QWidget* content_ = nullptr;
    QSize held_;
    std::optional<QPoint> corner_;
    QPoint pushed_;  // by the screen's edges, away from where it belongs
};

}  // namespace vantor

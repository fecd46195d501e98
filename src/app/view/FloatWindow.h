#pragma once
// A floating window that never takes the focus. While it holds nothing it is not mapped, for it would keep clicks from
// the game; what it holds decides its size, from the top left corner. Where the screen ends one without a fixed place
// gives way for as long as it must. Main thread.

#include <functional>
#include <optional>
#include <utility>

#include "ui/OverlayWindow.h"

namespace vantor {

class FloatWindow : public OverlayWindow {
public:
    FloatWindow(const QString& title, QSize size, bool movable, Prepare prepare);

    // Fills the window from now on; the window owns it. Until it asks for a size the window holds nothing.
    void setContent(QWidget* content);
    // What the content needs now. Empty: the window holds nothing, and is gone until it does.
    void fit(QSize size);
    // Where its top left corner belongs from now on, whatever it holds. Without such a place it grows from where it
    // stands, which the toolkit knows only once the window manager has told.
    void standAt(QPoint corner);
    // Shown from now on, as long as it holds something.
    void orderFront() override;
    void orderOut() override;
    [[nodiscard]] bool isWanted() const override { return isWanted_; }
    // Whether what it holds is to keep itself up to date: told at each of the two above, before anything is shown.
    void onWanted(std::function<void(bool wanted)> handler) { wanted_ = std::move(handler); }
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

    QWidget* content_ = nullptr;
    QSize held_;
    bool isWanted_ = false;
    std::function<void(bool wanted)> wanted_;
    std::optional<QPoint> corner_;
    QPoint pushed_;  // by the screen's edges, away from where it belongs
};

}  // namespace vantor

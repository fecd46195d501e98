#pragma once
// A frameless, translucent window over the game. It is dragged by its background (`movable`), resized at its edges
// (`resizable`), and mapped without the focus. Where the desktop does not blend, it has the shape of its solid part.
// Main thread; the backend gives it its nature before it is mapped first.

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtWidgets/QWidget>
#include <functional>

namespace vantor {

class OverlayWindow : public QWidget {
public:
    enum class Focus { onClick, never };
    struct Traits {
        Focus focus = Focus::never;
        bool movable = false;
        bool resizable = false;
        bool drawnByChildren = false;  // its own painting leaves out some of what it shows
    };
    // Runs when the window exists natively and is not yet mapped: once, and again should the toolkit make another
    // native window for it.
    using Prepare = std::function<void(WId)>;

    OverlayWindow(const Traits& traits, Prepare prepare);

    // Maps it, or only raises it when it is mapped already. Takes no focus either way.
    virtual void orderFront();
    virtual void orderOut();
    // A control of it shows that it has the keyboard, as soon as the window has it.
    void expectKeyboard();
    // Whether it is to be seen as soon as it has something to show.
    [[nodiscard]] virtual bool isWanted() const { return isVisible(); }
    // Where the program puts it, shown or not; nobody is told of it.
    virtual void place(const QRect& frame);
    // After each mapping and raising.
    void onOrderedFront(std::function<void(WId)> handler) { orderedFront_ = std::move(handler); }
    // After the player moved or resized it.
    void onPlaced(std::function<void(QRect)> handler) { placed_ = std::move(handler); }

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    // Where nothing is blended, it is cut to what it shows: after each change of that.
    void cut();
    // What to tell of its place: where the player put it.
    [[nodiscard]] virtual QRect placedFrame() const { return geometry(); }
    [[nodiscard]] bool isDragged() const { return dragging_; }

private:
    [[nodiscard]] Qt::Edges edgesAt(QPoint place) const;
    void drag(QPoint pointer);
    void settle();
    void tellPlace();
    void showKeyboard();
    void prepareNative();

    Traits traits_;
    Prepare prepare_;
    WId prepared_ = 0;
    std::function<void(WId)> orderedFront_;
    std::function<void(QRect)> placed_;
    bool keyboardExpected_ = false;
    bool dragging_ = false;
    Qt::Edges edges_;
    QPoint pointerAtStart_;
    QRect frameAtStart_;
    QRect frameTold_;
    bool settling_ = false;  // shown, and not painted since
};

}  // namespace vantor

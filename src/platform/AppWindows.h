#pragma once
// The windows of the application as its state sees them. Main thread.

namespace vantor {

enum class AppWindowName {
    main,
    icon,
    emoji,
    watchedEvents,
    typing,  // the line that shows how far a long text is; made when it is first wanted
};

class AppWindow {
public:
    virtual ~AppWindow() = default;
    // Shows it above the others, or only raises it when it is shown already. Never takes the focus from the game.
    virtual void orderFront() = 0;
    virtual void orderOut() = 0;
    // Has an effect once it is on the screen.
    virtual void takeFocus() = 0;
    // The same for a player without a mouse: the control that has the keyboard then shows it.
    virtual void takeKeyboard() { takeFocus(); }
};

}  // namespace vantor

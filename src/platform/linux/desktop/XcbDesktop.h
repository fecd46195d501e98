#pragma once
// One connection to the X server and the questions that the desktop's conventions answer: who is active, who has the
// focus, what a window says about itself. A window that has vanished gives an empty answer. One thread.

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/XAtoms.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/desktop/ApplicationIdentity.h"

namespace vantor {

struct WindowPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

class XcbDesktop {
public:
    // Nothing when there is no server. A null name means the one that DISPLAY names.
    [[nodiscard]] static std::unique_ptr<XcbDesktop> connect(const char* displayName = nullptr);

    [[nodiscard]] const XConnection& server() const { return *connection_; }
    [[nodiscard]] xcb_connection_t* connection() const { return connection_->get(); }
    [[nodiscard]] xcb_window_t root() const { return connection_->root(); }
    [[nodiscard]] int screen() const { return connection_->screen(); }
    [[nodiscard]] const XAtoms& atoms() const { return atoms_; }

    [[nodiscard]] xcb_window_t activeWindow() const;
    // XCB_NONE and XCB_INPUT_FOCUS_POINTER_ROOT as the server gives them.
    [[nodiscard]] xcb_window_t focusedWindow() const;
    // The window itself, or the nearest one above it, that a client has given a class.
    [[nodiscard]] xcb_window_t clientWindow(xcb_window_t window) const;
    [[nodiscard]] std::optional<WindowClass> windowClass(xcb_window_t window) const;
    [[nodiscard]] std::optional<std::uint32_t> process(xcb_window_t window) const;
    [[nodiscard]] bool exists(xcb_window_t window) const;
    [[nodiscard]] bool isViewable(xcb_window_t window) const;
    // By its own client; one that the manager hides with its frame is mapped.
    [[nodiscard]] bool isUnmapped(xcb_window_t window) const;
    // On the whole desktop, in pixels.
    [[nodiscard]] std::optional<WindowPlace> placeOnRoot(xcb_window_t window) const;
    // The managed windows, the topmost first.
    [[nodiscard]] std::vector<xcb_window_t> clientsFromTop() const;
    [[nodiscard]] bool managerSupports(xcb_atom_t atom) const;
    // Whether another client holds the pointer or the keyboard for itself. Nothing is held or let go for the answer.
    [[nodiscard]] bool othersHoldPointer() const;
    [[nodiscard]] bool othersHoldKeyboard() const;
    [[nodiscard]] bool isButtonDown() const;
    [[nodiscard]] bool selectionHasOwner(xcb_atom_t selection) const;
    [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const;

    void select(xcb_window_t window, std::uint32_t eventMask) const;
    void setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                    const std::vector<std::uint32_t>& values) const;
    // Asks the window manager to activate a window, as a pager does: no focus-stealing prevention refuses it.
    void requestActivation(xcb_window_t window) const;
    // Asks it to add one or two states to a mapped window.
    void requestStates(xcb_window_t window, xcb_atom_t first, xcb_atom_t second) const;
    void withdrawState(xcb_window_t window, xcb_atom_t state) const;
    // Hides a window, so that the window manager knows of it too (ICCCM 4.1.4).
    void withdraw(xcb_window_t window) const;
    void flush() const { xcb_flush(connection()); }

private:
    void requestFromManager(xcb_window_t window, xcb_atom_t message, const std::array<std::uint32_t, 5>& data) const;

    explicit XcbDesktop(std::unique_ptr<XConnection> connection);

    std::unique_ptr<XConnection> connection_;
    XAtoms atoms_;
    xcb_window_t neverMapped_;
};

}  // namespace vantor

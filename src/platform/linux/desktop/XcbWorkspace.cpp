#include "platform/linux/desktop/XcbWorkspace.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QMetaObject>
#include <algorithm>
#include <cstdlib>

namespace vantor {
namespace {

// A window manager names no window for a moment while it moves the focus from one to another; our windows would
// flicker.
constexpr std::chrono::milliseconds noneIsMeantAfter{100};

}  // namespace

XcbWorkspace::XcbWorkspace(std::unique_ptr<XcbDesktop> desktop, DesktopEntryLookup entries, std::uint32_t ownProcess)
    : desktop_(std::move(desktop)),
      entries_(std::move(entries)),
      ownProcess_(ownProcess),
      readable_(xcb_get_file_descriptor(desktop_->connection()), QSocketNotifier::Read) {
    desktop_->select(desktop_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    QObject::connect(&readable_, &QSocketNotifier::activated, [this] { drain(); });
    // A reply that was waited for may have read events from the socket, which then stays silent about them.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &readable_,
                     [this] { drain(); });
    noneLasts_.setSingleShot(true);
    noneLasts_.setInterval(noneIsMeantAfter);
    QObject::connect(&noneLasts_, &QTimer::timeout, [this] { report({}); });
    refresh();
}

XcbWorkspace::~XcbWorkspace() = default;

Subscription XcbWorkspace::observeFrontmostApplication(FrontmostHandler handler) {
    handler(frontmost_);
    return handlers_.add(std::move(handler));
}

Subscription XcbWorkspace::observeFrontmostWindow(FrontmostWindowHandler handler) {
    handler(lastOther_);
    return windowHandlers_.add(std::move(handler));
}

std::optional<std::string> XcbWorkspace::displayName(const std::string& identifier) const {
    return applicationDisplayName(identifier, entries_);
}

void XcbWorkspace::hideAndUnhideWithoutActivation() {
    const auto active = desktop_->activeWindow();
    const bool managed = isManaged();
    if (!isOwn(managed ? active : desktop_->clientWindow(desktop_->focusedWindow()))) return;
    const auto target = windowToGiveTheFocus();
    if (target == XCB_NONE) return;
    if (managed) {
        desktop_->requestActivation(target);
    } else {
        xcb_set_input_focus(desktop_->connection(), XCB_INPUT_FOCUS_POINTER_ROOT, target, XCB_CURRENT_TIME);
    }
    desktop_->flush();
    // What the questions above have read from the socket no longer wakes the notifier.
    QMetaObject::invokeMethod(&readable_, [this] { drain(); }, Qt::QueuedConnection);
}

PointerHold XcbWorkspace::pointerHold() const {
    // The frontmost application is changing just now, or leaves with its workspace: what holds the pointer may be what
    // is left of the old one's, and a window that asks for the focus brings some managers back to the old workspace.
    if (active_ == XCB_NONE || desktop_->activeWindow() != active_ || !isFocused(active_) ||
        !desktop_->isViewable(active_))
        return PointerHold::passing;
    if (!desktop_->othersHoldPointer()) return PointerHold::none;
    // A button that is down holds it for whoever was clicked. Menus and switchers hold the keyboard too.
    const bool passing = desktop_->isButtonDown() || desktop_->othersHoldKeyboard();
    return passing ? PointerHold::passing : PointerHold::lasting;
}

void XcbWorkspace::drain() {
    bool changed = false;
    while (const auto event = owned(xcb_poll_for_event(desktop_->connection()))) {
        const auto type = event->response_type & 0x7f;
        if (type == XCB_PROPERTY_NOTIFY) {
            const auto atom = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->atom;
            changed |= atom == desktop_->atoms().netActiveWindow || atom == XCB_ATOM_WM_CLASS;
        } else if (type == XCB_DESTROY_NOTIFY) {
            // The next window may be given the same number: nothing is known of it.
            const auto gone = reinterpret_cast<const xcb_destroy_notify_event_t*>(event.get())->window;
            if (gone == lastOther_) lastOther_ = XCB_NONE;
            if (gone == active_) active_ = XCB_NONE;
            changed = true;
        } else if (type == XCB_UNMAP_NOTIFY) {
            changed = true;
        }
    }
    if (xcb_connection_has_error(desktop_->connection())) {
        readable_.setEnabled(false);  // the server is gone; a closed descriptor is readable for ever
        return;
    }
    if (changed) refresh();
}

void XcbWorkspace::refresh() {
    auto active = desktop_->activeWindow();
    // Some window managers leave the last window's name there when it is gone and no other takes its place.
    // And some name the root window, which is no application and whose events this connection has chosen for itself.
    if (active == desktop_->root() || (active != XCB_NONE && !desktop_->exists(active))) active = XCB_NONE;
    // The same of a window of ours that was hidden when nobody else was there to take the focus.
    if (isOwn(active) && !desktop_->isViewable(active)) active = XCB_NONE;
    // Some make one active that refuses the focus, by a click or for want of another: what was in front stays so.
    if (isOwn(active) && refusesFocus(active)) active = desktop_->isViewable(lastOther_) ? lastOther_ : XCB_NONE;
    follow(active);
    if (isPanel(active)) {
        // Its menus are about the application below it, which stays the frontmost one while they are open.
        noneLasts_.stop();
        QMetaObject::invokeMethod(&readable_, [this] { drain(); }, Qt::QueuedConnection);
        return;
    }
    const bool own = isOwn(active);
    if (!own && active != XCB_NONE && active != lastOther_) {
        lastOther_ = active;
        windowHandlers_.tell(NativeWindow{lastOther_});
    }
    if (active == XCB_NONE) {
        if (!noneLasts_.isActive()) noneLasts_.start();
    } else {
        noneLasts_.stop();
        const auto windowClass = desktop_->windowClass(active).value_or(WindowClass{});
        report(own ? ownIdentifier : applicationIdentifier(windowClass, entries_));
    }
    // The questions above may have read the next change from the socket already.
    QMetaObject::invokeMethod(&readable_, [this] { drain(); }, Qt::QueuedConnection);
}

void XcbWorkspace::follow(xcb_window_t window) {
    if (window == active_) return;
    // A class that is set late, and the window's end. Only this connection's own choice of events changes.
    if (active_ != XCB_NONE) desktop_->select(active_, XCB_EVENT_MASK_NO_EVENT);
    active_ = window;
    if (active_ != XCB_NONE)
        desktop_->select(active_, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    desktop_->flush();
}

void XcbWorkspace::report(const std::string& identifier) {
    if (identifier == frontmost_) return;
    frontmost_ = identifier;
    handlers_.tell(identifier);
}

bool XcbWorkspace::isManaged() const { return desktop_->managerSupports(desktop_->atoms().netActiveWindow); }

bool XcbWorkspace::isFocused(xcb_window_t window) const {
    return desktop_->clientWindow(desktop_->focusedWindow()) == window;
}

bool XcbWorkspace::isOwn(xcb_window_t window) const {
    // 1 is the pointer root, no window.
    return window > XCB_INPUT_FOCUS_POINTER_ROOT && desktop_->process(window) == ownProcess_;
}

bool XcbWorkspace::refusesFocus(xcb_window_t window) const {
    // ICCCM 4.1.2.4: flags, and the wish for input.
    const auto hints = desktop_->numbers(window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS);
    return hints.size() > 1 && (hints[0] & 1) != 0 && hints[1] == 0;
}

bool XcbWorkspace::isPanel(xcb_window_t window) const {
    if (window == XCB_NONE) return false;
    const auto& atoms = desktop_->atoms();
    const auto types = desktop_->numbers(window, atoms.netWmWindowType, XCB_ATOM_ATOM);
    return std::find(types.begin(), types.end(), atoms.netWmWindowTypeDock) != types.end();
}

xcb_window_t XcbWorkspace::windowToGiveTheFocus() const {
    if (lastOther_ != XCB_NONE && desktop_->isViewable(lastOther_)) return lastOther_;
    const auto windows = desktop_->clientsFromTop();
    const auto found = std::find_if(windows.begin(), windows.end(), [this](xcb_window_t window) {
        return !isOwn(window) && desktop_->isViewable(window);
    });
    return found == windows.end() ? xcb_window_t{XCB_NONE} : *found;
}

}  // namespace vantor

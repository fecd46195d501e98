#include "platform/linux/desktop/XcbOverlayWindows.h"

#include <xcb/xfixes.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QVariant>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>
#include <string>
#include <utility>

namespace vantor {
namespace {

// ICCCM 4.1.2.4: flags, input and seven fields that stay unset.
constexpr std::size_t hintFields = 9;
constexpr std::uint32_t inputHint = 1;

// ICCCM 4.1.2.3: flags, then where the window is wanted; of the flags, that a player or a program has chosen the place.
constexpr std::uint32_t placeHints = 1 | 4;

// Levels among windows that are all "above" are unknown here: the last one shown is over the others.
bool takesFocus(WindowNature nature) { return nature == WindowNature::popup || nature == WindowNature::raisedPopup; }

// The server keeps a click and the focus apart, so a small window needs no focus to be clicked.
bool refusesFocus(WindowNature nature) {
    return nature == WindowNature::nonActivating || nature == WindowNature::floating;
}

// The toolkit sends what it was asked for with its own next event, which may not come for long.
void flushToolkit() {
    if (const auto* const toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        xcb_flush(toolkit->connection());
}

QWindow* toolkitWindow(xcb_window_t native) {
    for (QWindow* const window : QGuiApplication::allWindows())
        if (window->handle() && window->winId() == native) return window;
    return nullptr;
}

// The toolkit writes a window's hints anew at each showing, from its own flags: those say the same as what is written
// here.
void tellToolkit(QWindow& window, WindowNature nature) {
    auto flags = window.flags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    if (refusesFocus(nature)) flags |= Qt::WindowDoesNotAcceptFocus;
    if (flags != window.flags()) window.setFlags(flags);
    // The name that QWidget gives to Qt::WA_ShowWithoutActivating; it makes the user time 0 at each showing.
    window.setProperty("_q_showWithoutActivating", !takesFocus(nature));
}

}  // namespace

XcbOverlayWindows::XcbOverlayWindows(std::unique_ptr<XcbDesktop> desktop)
    : desktop_(std::move(desktop)), readable_(xcb_get_file_descriptor(desktop_->connection()), QSocketNotifier::Read) {
    QObject::connect(&readable_, &QSocketNotifier::activated, [this] { drain(); });
    // A reply that was waited for may have read events from the socket, which then stays silent about them.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &readable_,
                     [this] { drain(); });
    QCoreApplication::instance()->installNativeEventFilter(this);
}

XcbOverlayWindows::~XcbOverlayWindows() = default;

void XcbOverlayWindows::prepare(NativeWindow native, WindowNature nature) {
    const auto window = static_cast<xcb_window_t>(native);
    if (QWindow* const known = toolkitWindow(window)) {
        tellToolkit(*known, nature);
        known->setTransientParent(ownerOf(nature));
    }
    prepared_[window] = nature;
    desktop_->select(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    writeHints(window, nature);
    writeOwner(window, nature);
    desktop_->flush();
}

// A popup lies over the overlay, whichever of the two is raised.
QWindow* XcbOverlayWindows::ownerOf(WindowNature nature) const {
    if (takesFocus(nature))
        for (const auto& [window, other] : prepared_)
            if (QWindow* const overlay = other == WindowNature::overlay ? toolkitWindow(window) : nullptr)
                return overlay;
    return owner_.get();
}

void XcbOverlayWindows::takeFocus(NativeWindow native) {
    const auto window = static_cast<xcb_window_t>(native);
    // A window manager would keep the wish of one that it does not know yet, or map it.
    if (desktop_->isViewable(window)) desktop_->requestActivation(window);
    desktop_->flush();
}

void XcbOverlayWindows::setOwnerWindow(NativeWindow native) {
    // Made again even when it is the same: a new window may bear the number of one that is gone.
    const auto owner = static_cast<xcb_window_t>(native);
    const std::unique_ptr<QWindow> last = std::move(owner_);
    if (desktop_->exists(owner)) owner_.reset(QWindow::fromWinId(owner));
    for (const auto& [window, nature] : prepared_) {
        // The toolkit writes the owner itself before it maps a window, and only then.
        if (QWindow* const known = toolkitWindow(window)) known->setTransientParent(ownerOf(nature));
        writeOwner(window, nature);
        // Window managers learn of the new owner, but do not restack for it.
        constexpr std::uint32_t above = XCB_STACK_MODE_ABOVE;
        if (desktop_->isViewable(window))
            xcb_configure_window(desktop_->connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    desktop_->flush();
}

// Some window managers iconify ours with the game. The toolkit would remember that over the hiding and map them as
// icons ever after; so it does not hear of it.
bool XcbOverlayWindows::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if (type != "xcb_generic_event_t" || (event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
    const auto* const change = static_cast<const xcb_property_notify_event_t*>(message);
    const auto& atoms = desktop_->atoms();
    return (change->atom == atoms.wmState || change->atom == atoms.netWmState) && prepared_.contains(change->window);
}

void XcbOverlayWindows::followBlending(std::function<void(bool blends)> handler) {
    blending_ = std::move(handler);
    // EWMH: a compositor owns the selection of its screen.
    auto* const connection = desktop_->connection();
    const auto compositor = internAtom(connection, "_NET_WM_CM_S" + std::to_string(desktop_->screen()));
    const auto* const extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (extension && extension->present) {
        selectionNotice_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        xcb_discard_reply(connection, xcb_xfixes_query_version(connection, 1, 0).sequence);
        xcb_xfixes_select_selection_input(connection, desktop_->root(), compositor,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    blending_(desktop_->selectionHasOwner(compositor));
}

void XcbOverlayWindows::drain() {
    while (const auto event = owned(xcb_poll_for_event(desktop_->connection()))) {
        const auto type = event->response_type & 0x7f;
        if (type == XCB_MAP_NOTIFY)
            mapped(reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window);
        else if (type == XCB_UNMAP_NOTIFY)
            unmapped(reinterpret_cast<const xcb_unmap_notify_event_t*>(event.get())->window);
        else if (type == XCB_DESTROY_NOTIFY)
            destroyed(reinterpret_cast<const xcb_destroy_notify_event_t*>(event.get())->window);
        else if (selectionNotice_ != 0 && type == selectionNotice_)
            blending_(reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event.get())->owner != XCB_NONE);
    }
    desktop_->flush();
    flushToolkit();
    if (xcb_connection_has_error(desktop_->connection())) readable_.setEnabled(false);
}

void XcbOverlayWindows::mapped(xcb_window_t window) {
    const auto found = prepared_.find(window);
    if (found == prepared_.end()) return;
    // Hidden again before the window manager came to map it, which some then do all the same.
    if (const QWindow* const known = toolkitWindow(window); known && !known->isVisible())
        return desktop_->withdraw(window);
    // The window manager forgets a window's states when it is hidden, and the toolkit knows only some of them.
    const auto& atoms = desktop_->atoms();
    desktop_->requestStates(window, atoms.netWmStateAbove, XCB_ATOM_NONE);
    desktop_->requestStates(window, atoms.netWmStateSkipTaskbar, atoms.netWmStateSkipPager);
    // Some give it to every window that comes without the focus.
    desktop_->withdrawState(window, atoms.netWmStateDemandsAttention);
    if (takesFocus(found->second)) desktop_->requestActivation(window);
    if (standing_.insert(window).second) requestPlace(window);
}

// Window managers unmap one as well, with the game or with its workspace. It stands where the player has left it then.
void XcbOverlayWindows::unmapped(xcb_window_t window) {
    const QWindow* const known = toolkitWindow(window);
    if (!known || !known->isVisible()) standing_.erase(window);
}

void XcbOverlayWindows::destroyed(xcb_window_t window) {
    prepared_.erase(window);
    standing_.erase(window);
}

// Some take a window in elsewhere than it was wanted: i3 shifts it by the frame that it then goes without, and puts one
// for the very corner into the middle.
void XcbOverlayWindows::requestPlace(xcb_window_t window) const {
    const auto hints = desktop_->numbers(window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS);
    if (hints.size() < 3 || (hints[0] & placeHints) == 0) return;
    xcb_configure_window(desktop_->connection(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, &hints[1]);
}

void XcbOverlayWindows::writeHints(xcb_window_t window, WindowNature nature) const {
    const auto& atoms = desktop_->atoms();
    desktop_->setNumbers(window, atoms.netWmWindowType, XCB_ATOM_ATOM, {atoms.netWmWindowTypeUtility});
    desktop_->setNumbers(window, atoms.netWmState, XCB_ATOM_ATOM,
                         {atoms.netWmStateAbove, atoms.netWmStateSkipTaskbar, atoms.netWmStateSkipPager});
    if (!takesFocus(nature)) desktop_->setNumbers(window, atoms.netWmUserTime, XCB_ATOM_CARDINAL, {0});
    std::vector<std::uint32_t> hints(hintFields, 0);
    hints[0] = inputHint;
    hints[1] = refusesFocus(nature) ? 0 : 1;
    desktop_->setNumbers(window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, hints);
}

void XcbOverlayWindows::writeOwner(xcb_window_t window, WindowNature nature) const {
    if (QWindow* const owner = ownerOf(nature))
        desktop_->setNumbers(window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW,
                             {static_cast<std::uint32_t>(owner->winId())});
}

}  // namespace vantor

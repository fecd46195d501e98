#include "platform/linux/desktop/XcbDesktop.h"

#include <algorithm>
#include <string_view>

namespace vantor {
namespace {

constexpr std::uint32_t sourceIsPager = 2;       // EWMH, "source indication"
constexpr std::uint32_t longestProperty = 4096;  // in units of 32 bits

auto propertyOf(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type) {
    const auto cookie = xcb_get_property(connection, 0, window, property, type, 0, longestProperty);
    xcb_generic_error_t* error = nullptr;  // the window is gone: the answer is empty
    auto reply = owned(xcb_get_property_reply(connection, cookie, &error));
    const auto freed = owned(error);
    return reply;
}

auto attributesOf(xcb_connection_t* connection, xcb_window_t window) {
    const auto cookie = xcb_get_window_attributes(connection, window);
    xcb_generic_error_t* error = nullptr;
    auto reply = owned(xcb_get_window_attributes_reply(connection, cookie, &error));
    const auto freed = owned(error);
    return reply;
}

}  // namespace

std::unique_ptr<XcbDesktop> XcbDesktop::connect(const char* displayName) {
    auto connection = std::make_unique<XConnection>(displayName, XConnection::Extensions::later);
    if (connection->verdict() != XConnection::Verdict::connected) return nullptr;
    return std::unique_ptr<XcbDesktop>(new XcbDesktop(std::move(connection)));
}

XcbDesktop::XcbDesktop(std::unique_ptr<XConnection> connection)
    : connection_(std::move(connection)),
      atoms_(XAtoms::intern(connection_->get())),
      neverMapped_(xcb_generate_id(connection_->get())) {
    xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, neverMapped_, root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

xcb_window_t XcbDesktop::activeWindow() const {
    const auto found = numbers(root(), atoms_.netActiveWindow, XCB_ATOM_WINDOW);
    return found.empty() ? xcb_window_t{XCB_NONE} : found.front();
}

xcb_window_t XcbDesktop::focusedWindow() const {
    const auto reply = owned(xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
    return reply ? reply->focus : xcb_window_t{XCB_NONE};
}

xcb_window_t XcbDesktop::clientWindow(xcb_window_t window) const {
    // Some toolkits focus a window of their own inside the one that the window manager knows.
    while (window != XCB_NONE && window != root() && !windowClass(window)) {
        xcb_generic_error_t* error = nullptr;
        const auto reply = owned(xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window), &error));
        const auto freed = owned(error);
        window = reply ? reply->parent : xcb_window_t{XCB_NONE};
    }
    return window == root() ? xcb_window_t{XCB_NONE} : window;
}

std::optional<WindowClass> XcbDesktop::windowClass(xcb_window_t window) const {
    const auto reply = propertyOf(connection(), window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    if (!reply || reply->format != 8) return std::nullopt;
    const std::string_view both(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    const auto middle = both.find('\0');
    if (middle == std::string_view::npos) return WindowClass{std::string(both), {}};
    auto name = both.substr(middle + 1);
    name = name.substr(0, name.find('\0'));
    return WindowClass{std::string(both.substr(0, middle)), std::string(name)};
}

std::optional<std::uint32_t> XcbDesktop::process(xcb_window_t window) const {
    const auto found = numbers(window, atoms_.netWmPid, XCB_ATOM_CARDINAL);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

bool XcbDesktop::exists(xcb_window_t window) const { return attributesOf(connection(), window) != nullptr; }

bool XcbDesktop::isViewable(xcb_window_t window) const {
    const auto attributes = attributesOf(connection(), window);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool XcbDesktop::isUnmapped(xcb_window_t window) const {
    const auto attributes = attributesOf(connection(), window);
    return attributes && attributes->map_state == XCB_MAP_STATE_UNMAPPED;
}

std::optional<WindowPlace> XcbDesktop::placeOnRoot(xcb_window_t window) const {
    const auto sizeAsked = xcb_get_geometry(connection(), window);
    const auto cornerAsked = xcb_translate_coordinates(connection(), window, root(), 0, 0);
    xcb_generic_error_t* error = nullptr;
    const auto size = owned(xcb_get_geometry_reply(connection(), sizeAsked, &error));
    const auto freed = owned(error);
    error = nullptr;
    const auto corner = owned(xcb_translate_coordinates_reply(connection(), cornerAsked, &error));
    const auto freedToo = owned(error);
    if (!size || !corner) return std::nullopt;
    return WindowPlace{corner->dst_x, corner->dst_y, size->width, size->height};
}

std::vector<xcb_window_t> XcbDesktop::clientsFromTop() const {
    auto windows = numbers(root(), atoms_.netClientListStacking, XCB_ATOM_WINDOW);
    std::reverse(windows.begin(), windows.end());
    return windows;
}

bool XcbDesktop::managerSupports(xcb_atom_t atom) const {
    const auto supported = numbers(root(), atoms_.netSupported, XCB_ATOM_ATOM);
    return std::find(supported.begin(), supported.end(), atom) != supported.end();
}

// The server answers that another client holds a device before it finds that this window cannot be seen, for which it
// refuses every time: so the question changes nothing, and no window hears of a grab.
bool XcbDesktop::othersHoldPointer() const {
    const auto cookie = xcb_grab_pointer(connection(), 1, neverMapped_, XCB_EVENT_MASK_NO_EVENT, XCB_GRAB_MODE_ASYNC,
                                         XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
    const auto reply = owned(xcb_grab_pointer_reply(connection(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool XcbDesktop::othersHoldKeyboard() const {
    const auto cookie =
        xcb_grab_keyboard(connection(), 1, neverMapped_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto reply = owned(xcb_grab_keyboard_reply(connection(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool XcbDesktop::isButtonDown() const {
    constexpr unsigned anyButton =
        XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3 | XCB_BUTTON_MASK_4 | XCB_BUTTON_MASK_5;
    const auto reply = owned(xcb_query_pointer_reply(connection(), xcb_query_pointer(connection(), root()), nullptr));
    return reply && (reply->mask & anyButton) != 0;
}

bool XcbDesktop::selectionHasOwner(xcb_atom_t selection) const {
    const auto cookie = xcb_get_selection_owner(connection(), selection);
    const auto reply = owned(xcb_get_selection_owner_reply(connection(), cookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

std::vector<std::uint32_t> XcbDesktop::numbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const {
    const auto reply = propertyOf(connection(), window, property, type);
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

void XcbDesktop::select(xcb_window_t window, std::uint32_t eventMask) const {
    xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &eventMask);
}

void XcbDesktop::setNumbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                            const std::vector<std::uint32_t>& values) const {
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void XcbDesktop::requestActivation(xcb_window_t window) const {
    requestFromManager(window, atoms_.netActiveWindow, {sourceIsPager, XCB_CURRENT_TIME, XCB_NONE});
}

void XcbDesktop::requestStates(xcb_window_t window, xcb_atom_t first, xcb_atom_t second) const {
    constexpr std::uint32_t add = 1;
    requestFromManager(window, atoms_.netWmState, {add, first, second, sourceIsPager});
}

void XcbDesktop::withdrawState(xcb_window_t window, xcb_atom_t state) const {
    constexpr std::uint32_t remove = 0;
    requestFromManager(window, atoms_.netWmState, {remove, state, XCB_ATOM_NONE, sourceIsPager});
}

void XcbDesktop::withdraw(xcb_window_t window) const {
    xcb_unmap_window(connection(), window);
    xcb_unmap_notify_event_t told{};
    told.response_type = XCB_UNMAP_NOTIFY;
    told.event = root();
    told.window = window;
    xcb_send_event(connection(), 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&told));
}

void XcbDesktop::requestFromManager(xcb_window_t window, xcb_atom_t message,
                                    const std::array<std::uint32_t, 5>& data) const {
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window;
    request.type = message;
    std::copy(data.begin(), data.end(), request.data.data32);
    xcb_send_event(connection(), 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&request));
}

}  // namespace vantor

#include "platform/linux/XAtoms.h"

#include <array>
#include <cstdint>
#include <utility>

#include "platform/linux/XReply.h"

namespace vantor {
namespace {

using Row = std::pair<xcb_atom_t XAtoms::*, std::string_view>;

constexpr std::array names{
    Row{&XAtoms::utf8String, "UTF8_STRING"},
    Row{&XAtoms::netSupported, "_NET_SUPPORTED"},
    Row{&XAtoms::netActiveWindow, "_NET_ACTIVE_WINDOW"},
    Row{&XAtoms::netClientListStacking, "_NET_CLIENT_LIST_STACKING"},
    Row{&XAtoms::wmState, "WM_STATE"},
    Row{&XAtoms::netWmPid, "_NET_WM_PID"},
    Row{&XAtoms::netWmUserTime, "_NET_WM_USER_TIME"},
    Row{&XAtoms::netWmState, "_NET_WM_STATE"},
    Row{&XAtoms::netWmStateAbove, "_NET_WM_STATE_ABOVE"},
    Row{&XAtoms::netWmStateSkipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR"},
    Row{&XAtoms::netWmStateSkipPager, "_NET_WM_STATE_SKIP_PAGER"},
    Row{&XAtoms::netWmStateDemandsAttention, "_NET_WM_STATE_DEMANDS_ATTENTION"},
    Row{&XAtoms::netWmWindowType, "_NET_WM_WINDOW_TYPE"},
    Row{&XAtoms::netWmWindowTypeUtility, "_NET_WM_WINDOW_TYPE_UTILITY"},
    Row{&XAtoms::netWmWindowTypeDock, "_NET_WM_WINDOW_TYPE_DOCK"},
};

xcb_intern_atom_cookie_t ask(xcb_connection_t* connection, std::string_view name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t answer(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

XAtoms XAtoms::intern(xcb_connection_t* connection) {
    // All questions first: one round trip for the whole table.
    std::array<xcb_intern_atom_cookie_t, names.size()> cookies{};
    for (std::size_t at = 0; at < names.size(); ++at) cookies[at] = ask(connection, names[at].second);
    XAtoms atoms;
    for (std::size_t at = 0; at < names.size(); ++at) atoms.*names[at].first = answer(connection, cookies[at]);
    return atoms;
}

xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name) {
    return answer(connection, ask(connection, name));
}

}  // namespace vantor

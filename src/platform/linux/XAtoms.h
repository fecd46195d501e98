#pragma once
// The X atoms that the desktop's conventions (EWMH, ICCCM) are spoken in. A plain value, any thread.

#include <xcb/xcb.h>

#include <string_view>

namespace vantor {

struct XAtoms {
    xcb_atom_t utf8String = XCB_ATOM_NONE;
    xcb_atom_t netSupported = XCB_ATOM_NONE;
    xcb_atom_t netActiveWindow = XCB_ATOM_NONE;
    xcb_atom_t netClientListStacking = XCB_ATOM_NONE;
    xcb_atom_t wmState = XCB_ATOM_NONE;
    xcb_atom_t netWmPid = XCB_ATOM_NONE;
    xcb_atom_t netWmUserTime = XCB_ATOM_NONE;
    xcb_atom_t netWmState = XCB_ATOM_NONE;
    xcb_atom_t netWmStateAbove = XCB_ATOM_NONE;
    xcb_atom_t netWmStateSkipTaskbar = XCB_ATOM_NONE;
    xcb_atom_t netWmStateSkipPager = XCB_ATOM_NONE;
    xcb_atom_t netWmStateDemandsAttention = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowType = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowTypeUtility = XCB_ATOM_NONE;
    xcb_atom_t netWmWindowTypeDock = XCB_ATOM_NONE;

    [[nodiscard]] static XAtoms intern(xcb_connection_t* connection);
};

// One name that is not worth a place in the table.
[[nodiscard]] xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name);

}  // namespace vantor

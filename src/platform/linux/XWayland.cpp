#include "platform/linux/XWayland.h"

#include <xcb/xinput.h>

#include <string_view>

namespace vantor {
namespace {

constexpr std::string_view extensionName = "XWAYLAND";
constexpr std::string_view deviceName = "xwayland-";

// Since version 23.1.
bool hasExtension(xcb_connection_t* connection) {
    const auto asked = xcb_query_extension(connection, extensionName.size(), extensionName.data());
    const auto reply = owned(xcb_query_extension_reply(connection, asked, nullptr));
    return reply && reply->present;
}

bool hasDevice(xcb_connection_t* connection) {
    const auto asked = xcb_input_xi_query_device(connection, XCB_INPUT_DEVICE_ALL);
    const auto reply = owned(xcb_input_xi_query_device_reply(connection, asked, nullptr));
    if (!reply) return false;
    for (auto each = xcb_input_xi_query_device_infos_iterator(reply.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string_view name(xcb_input_xi_device_info_name(each.data),
                                    static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
        if (name.starts_with(deviceName)) return true;
    }
    return false;
}

}  // namespace

std::optional<std::string> xwaylandVersion(const XConnection& connection) {
    auto* const server = connection.get();
    if (!server || connection.isLost()) return std::nullopt;
    if (!hasExtension(server) && !(connection.hasRawKeys() && hasDevice(server))) return std::nullopt;
    return serverVersionText(xcb_get_setup(server)->release_number);
}

std::string serverVersionText(std::uint32_t release) {
    const auto part = [release](std::uint32_t unit) { return std::to_string(release / unit % 100); };
    return part(100000) + "." + part(1000) + "." + std::to_string(release % 1000);
}

}  // namespace vantor

#include "sweep/DeviceKeys.h"

#include <xcb/xinput.h>

namespace vantor::sweep {

DeviceKeys::DeviceKeys(const XConnection& server, std::string_view name) : server_(server) {
    if (!server.hasRawKeys()) return;
    const XReply<xcb_input_xi_query_device_reply_t> devices(xcb_input_xi_query_device_reply(
        server.get(), xcb_input_xi_query_device(server.get(), XCB_INPUT_DEVICE_ALL), nullptr));
    if (!devices) return;
    for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string_view itsName(xcb_input_xi_device_info_name(each.data),
                                       static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
        if (each.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD || !itsName.starts_with(name)) continue;
        device_ = static_cast<std::uint8_t>(each.data->deviceid);
        break;
    }
    const XReply<xcb_input_open_device_reply_t> opened(
        xcb_input_open_device_reply(server.get(), xcb_input_open_device(server.get(), device_), nullptr));
}

std::bitset<256> DeviceKeys::down() const {
    std::bitset<256> down;
    const XReply<xcb_input_query_device_state_reply_t> state(xcb_input_query_device_state_reply(
        server_.get(), xcb_input_query_device_state(server_.get(), device_), nullptr));
    if (!state) return down;
    for (auto each = xcb_input_query_device_state_classes_iterator(state.get()); each.rem > 0;
         xcb_input_input_state_next(&each)) {
        if (each.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
        const auto& keys = reinterpret_cast<const xcb_input_key_state_t&>(*each.data);
        for (std::size_t key = 0; key < down.size(); ++key) down[key] = keys.keys[key / 8] >> key % 8 & 1;
    }
    return down;
}

}  // namespace vantor::sweep

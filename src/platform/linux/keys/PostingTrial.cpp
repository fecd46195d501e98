#include "platform/linux/keys/PostingTrial.h"

#include <poll.h>
#include <xcb/xinput.h>

#include <chrono>

#include "platform/linux/XConnection.h"

namespace vantor {
namespace {

constexpr std::chrono::milliseconds patience{300};
constexpr std::uint8_t lastKey = 255;
constexpr std::uint8_t firstKey = 9;  // 8 is none of the kernel's

bool isPressOf(const xcb_generic_event_t& event, const XConnection& listening, std::uint8_t xKeycode) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) return false;
    const auto& key = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    return key.extension == listening.inputOpcode() && key.event_type == XCB_INPUT_RAW_KEY_PRESS &&
           key.detail == xKeycode;
}

}  // namespace

bool keyArrives(std::uint8_t xKeycode, const std::function<void(std::uint8_t xKeycode)>& tap) {
    const XConnection listening;
    if (!listening.hasRawKeys()) return true;  // nobody can tell
    listening.selectRawKeys(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS);
    const auto selected =
        owned(xcb_get_input_focus_reply(listening.get(), xcb_get_input_focus(listening.get()), nullptr));
    tap(xKeycode);
    bool arrived = false;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!arrived) {
        while (const auto event = owned(xcb_poll_for_event(listening.get())))
            arrived = arrived || isPressOf(*event, listening, xKeycode);
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (arrived || left <= 0 || listening.isLost()) break;
        pollfd socket{xcb_get_file_descriptor(listening.get()), POLLIN, 0};
        ::poll(&socket, 1, static_cast<int>(left));
    }
    return arrived;
}

std::uint8_t meaninglessKey(const XkbKeymap& keymap) {
    for (std::uint8_t key = lastKey; keymap && key >= firstKey; --key)
        if (xkb_keymap_num_layouts_for_key(keymap.get(), key) == 0) return key;
    return lastKey;
}

}  // namespace vantor

#include "sweep/Typist.h"

#include <thread>

namespace vantor::sweep {
namespace {

constexpr unsigned waitsBetweenReads = 32;

}  // namespace

void DrainingPause::wait(std::chrono::microseconds duration) {
    if (pace_.count() > 0) std::this_thread::sleep_for(std::max(pace_, duration));
    if (act) act();
    if (++waits_ % waitsBetweenReads == 0) receiver_.drain();
}

void Typist::type(const std::string& text) {
    clipboard_.typeString(text);
    settle();
}

void Typist::settle() {
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
}

}  // namespace vantor::sweep

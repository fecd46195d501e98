// Measures programs from outside, on the X server's own events:
//   bench-probe start NAME PROGRAM...   ms from the start of PROGRAM until its window NAME is mapped, and until it asks
//                                       a system tray for a place ("mapped MS" and "docked MS"); then ends it
//   bench-probe toggle NAME COUNT       COUNT times: the hotkey Control+Shift+T until NAME is mapped, and its head
//                                       shows what it then keeps ("MS MS" a line); closed with Escape each time
//   bench-probe midtext NAME COUNT PROGRAM...
//                                       until it is mapped while a text is typed that PROGRAM asks for each time
//   bench-probe pace PROGRAM...         key events that PROGRAM makes and ms from the first to the last of them

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Instant = std::chrono::steady_clock::time_point;
constexpr auto patience = std::chrono::seconds(20);

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

double milliseconds(Instant from, Instant to) { return std::chrono::duration<double, std::milli>(to - from).count(); }

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "bench-probe: %s\n", what.c_str());
    std::exit(1);
}

class Server {
public:
    Server() : connection_(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(connection_)) fail("no X server");
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        utf8Name_ = atom("_NET_WM_NAME");
    }

    ~Server() { xcb_disconnect(connection_); }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] xcb_atom_t atom(std::string_view name) const {
        const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
        return reply ? reply->atom : 0;
    }
    [[nodiscard]] std::string nameOf(xcb_window_t window) const {
        const auto cookie = xcb_get_property(connection_, 0, window, utf8Name_, XCB_ATOM_ANY, 0, 64);
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
        if (!reply) return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
    }
    // Of this name itself, or the window manager's frame around one: a program may map its window before this one, on a
    // busy machine, has had the time to watch it.
    [[nodiscard]] xcb_window_t bearer(xcb_window_t window, std::string_view name) const {
        if (nameOf(window) == name) return window;
        const Owned<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
        if (!tree) return XCB_NONE;
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        for (int child = 0; child < xcb_query_tree_children_length(tree.get()); ++child)
            if (nameOf(children[child]) == name) return children[child];
        return XCB_NONE;
    }
    // Every window that exists or comes, whatever frame it gets later.
    void watchWindows() const {
        watch(root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        std::vector<xcb_window_t> below{root_};
        for (std::size_t at = 0; at < below.size(); ++at) {
            const Owned<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(connection_, xcb_query_tree(connection_, below[at]), nullptr));
            if (!tree) continue;
            const xcb_window_t* children = xcb_query_tree_children(tree.get());
            for (int child = 0; child < xcb_query_tree_children_length(tree.get()); ++child) {
                below.push_back(children[child]);
                watch(children[child], XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            }
        }
        xcb_flush(connection_);
    }
    void watch(xcb_window_t window, std::uint32_t mask) const {
        xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
    }
    // Nothing when the time is over.
    [[nodiscard]] Owned<xcb_generic_event_t> next(Instant deadline) const {
        xcb_flush(connection_);
        for (;;) {
            if (auto* event = xcb_poll_for_event(connection_)) return Owned<xcb_generic_event_t>(event);
            const auto left = milliseconds(std::chrono::steady_clock::now(), deadline);
            if (left <= 0) return nullptr;
            pollfd descriptor{xcb_get_file_descriptor(connection_), POLLIN, 0};
            (void)poll(&descriptor, 1, static_cast<int>(left) + 1);
            if (xcb_connection_has_error(connection_)) fail("the X server is gone");
        }
    }
    // What the screen shows, of the window's head: its title and the tabs.
    [[nodiscard]] std::string head(xcb_window_t window) const {
        constexpr std::int16_t left = 40, top = 20;
        constexpr std::uint16_t width = 300, height = 80;
        const auto cookie = xcb_translate_coordinates(connection_, window, root_, left, top);
        const Owned<xcb_translate_coordinates_reply_t> at(
            xcb_translate_coordinates_reply(connection_, cookie, nullptr));
        if (!at) return {};
        const Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
            connection_,
            xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, at->dst_x, at->dst_y, width, height, ~0U),
            nullptr));
        if (!image) fail("no picture of the window");
        return {reinterpret_cast<const char*>(xcb_get_image_data(image.get())),
                static_cast<std::size_t>(xcb_get_image_data_length(image.get()))};
    }
    void key(std::uint8_t code, bool down) const {
        xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0,
                            0);
        xcb_flush(connection_);
    }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
    xcb_atom_t utf8Name_ = 0;
};

pid_t startProgram(char** command) {
    const pid_t child = fork();
    if (child == 0) {
        // Its lines are not part of the figures.
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        execvp(command[0], command);
        _exit(127);
    }
    return child;
}

// A system tray that takes each status item in.
class Tray {
public:
    explicit Tray(const Server& server) : server_(server), window_(xcb_generate_id(server.get())) {
        // No window of the window manager's: it would get the focus, and the program is measured over a focused game.
        constexpr std::uint32_t unmanaged = 1;
        xcb_create_window(server.get(), XCB_COPY_FROM_PARENT, window_, server.root(), 0, 0, 64, 24, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
        xcb_map_window(server.get(), window_);
        xcb_set_selection_owner(server.get(), window_, server.atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
        opcode_ = server.atom("_NET_SYSTEM_TRAY_OPCODE");
        embed_ = server.atom("_XEMBED");
        xcb_flush(server.get());
    }

    // Whether the message asked for a place.
    bool take(const xcb_client_message_event_t& message) const {
        constexpr std::uint32_t requestDock = 0;
        if (message.type != opcode_ || message.data.data32[1] != requestDock) return false;
        const xcb_window_t item = message.data.data32[2];
        xcb_reparent_window(server_.get(), item, window_, 0, 0);
        xcb_map_window(server_.get(), item);
        xcb_client_message_event_t embedded{};
        embedded.response_type = XCB_CLIENT_MESSAGE;
        embedded.format = 32;
        embedded.window = item;
        embedded.type = embed_;
        embedded.data.data32[3] = window_;
        xcb_send_event(server_.get(), 0, item, 0, reinterpret_cast<const char*>(&embedded));
        xcb_flush(server_.get());
        return true;
    }

private:
    const Server& server_;
    xcb_window_t window_;
    xcb_atom_t opcode_ = 0;
    xcb_atom_t embed_ = 0;
};

int measureStart(const char* name, char** command) {
    const Server server;
    const Tray tray(server);
    server.watchWindows();
    const Instant start = std::chrono::steady_clock::now();
    const pid_t child = startProgram(command);
    std::optional<Instant> mapped;
    std::optional<Instant> docked;
    // A program without a status item is given a second more after its window.
    Instant deadline = start + patience;
    while (!mapped || !docked) {
        const auto event = server.next(deadline);
        if (!event) break;
        const Instant now = std::chrono::steady_clock::now();
        const auto* any = event.get();
        switch (any->response_type & 0x7f) {
            case XCB_CREATE_NOTIFY:
                server.watch(reinterpret_cast<const xcb_create_notify_event_t*>(any)->window,
                             XCB_EVENT_MASK_STRUCTURE_NOTIFY);
                break;
            case XCB_MAP_NOTIFY:
                if (!mapped && server.bearer(reinterpret_cast<const xcb_map_notify_event_t*>(any)->window, name)) {
                    mapped = now;
                    deadline = now + std::chrono::seconds(1);
                }
                break;
            case XCB_CLIENT_MESSAGE:
                if (tray.take(*reinterpret_cast<const xcb_client_message_event_t*>(any)) && !docked) docked = now;
                break;
            default:
                break;
        }
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    if (!mapped) fail(std::string(name) + " was never mapped");
    std::printf("mapped %.2f\n", milliseconds(start, *mapped));
    if (docked) std::printf("docked %.2f\n", milliseconds(start, *docked));
    return 0;
}

// The next event of this kind, of the window, or of any window without one.
struct Seen {
    Instant when;
    xcb_window_t window;
};
Seen awaitChange(const Server& server, const char* name, std::uint8_t kind, xcb_window_t window = XCB_NONE) {
    const Instant deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const auto event = server.next(deadline);
        if (!event) fail(std::string(name) + " did not change in time");
        const Instant now = std::chrono::steady_clock::now();
        const auto* any = event.get();
        const auto type = any->response_type & 0x7f;
        // Without a window to wait for, those that come are asked for their names: that takes round trips, and time.
        if (type == XCB_CREATE_NOTIFY && window == XCB_NONE)
            server.watch(reinterpret_cast<const xcb_create_notify_event_t*>(any)->window,
                         XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        if (type != kind) continue;
        // Map and unmap events have their window at the same place.
        const xcb_window_t changed = reinterpret_cast<const xcb_map_notify_event_t*>(any)->window;
        const xcb_window_t found = window == XCB_NONE ? server.bearer(changed, name) : changed;
        if (found != XCB_NONE && (window == XCB_NONE || found == window)) return {now, found};
    }
}

// When the window's head first showed what it has then shown for this long.
Instant awaitPixels(const Server& server, xcb_window_t window, std::chrono::milliseconds settled) {
    std::string shown;
    Instant since{};
    for (;;) {
        std::string head = server.head(window);
        const Instant now = std::chrono::steady_clock::now();
        if (head != shown) {
            shown = std::move(head);
            since = now;
        } else if (now - since > settled) {
            return since;
        }
        usleep(1'000);  // the server paints for the program as well
    }
}

// X key codes of the evdev keymap: left Control, left Shift, T; and Escape.
constexpr std::array<std::uint8_t, 3> hotkey = {37, 50, 28};
constexpr std::uint8_t escape = 9;

int measureToggle(const char* name, int count) {
    const auto [control, shift, t] = hotkey;
    // A player's hand: not in step with anything.
    const auto rest = [](int round) { usleep(static_cast<useconds_t>(60'000 + 7'919 * round % 40'000)); };
    std::optional<Server> finder(std::in_place);
    finder->watchWindows();
    // Once the window is known, a connection that hears of nothing else keeps the probe out of its own figures.
    const Server server;
    xcb_window_t window = XCB_NONE;
    for (int round = 0; round < count; ++round) {
        const Server& watching = finder ? *finder : server;
        server.key(control, true);
        server.key(shift, true);
        server.key(t, true);
        rest(round);
        const Instant start = std::chrono::steady_clock::now();
        server.key(t, false);
        const Seen mapped = awaitChange(watching, name, XCB_MAP_NOTIFY, window);
        // The engine of the first page may disturb the first opening for longer.
        const Instant painted =
            awaitPixels(watching, mapped.window, std::chrono::milliseconds(round == 0 ? 2'000 : 200));
        std::printf("%.3f %.3f\n", milliseconds(start, mapped.when), milliseconds(start, painted));
        if (finder) {
            window = mapped.window;
            server.watch(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            finder.reset();
        }
        server.key(shift, false);
        server.key(control, false);
        rest(round);
        server.key(escape, true);
        server.key(escape, false);
        awaitChange(finder ? *finder : server, name, XCB_UNMAP_NOTIFY, window);
        rest(round);
    }
    return 0;
}

void selectRawKeys(const Server& server) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
           XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    const Owned<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(server.get(), xcb_input_xi_query_version(server.get(), 2, 2), nullptr));
    if (!version) fail("no XInput 2");
    xcb_input_xi_select_events(server.get(), server.root(), 1, &mask.head);
    xcb_flush(server.get());
}

bool isRawKey(const xcb_generic_event_t& event) { return (event.response_type & 0x7f) == XCB_GE_GENERIC; }

int measureMidText(const char* name, int count, char** command) {
    const Server finder;
    finder.watchWindows();
    xcb_window_t window = XCB_NONE;
    for (int round = 0; round < count; ++round) {
        const Server keys;
        selectRawKeys(keys);
        const pid_t child = startProgram(command);
        waitpid(child, nullptr, 0);
        // Not always at the same character.
        constexpr int atLeast = 20;
        for (int seen = 0; seen < atLeast + 7 * round % 50;) {
            const auto event = keys.next(std::chrono::steady_clock::now() + patience);
            if (!event) fail("no text is typed");
            seen += isRawKey(*event);
        }
        const Server server;
        if (window != XCB_NONE) {
            server.watch(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            xcb_flush(server.get());
        }
        for (const std::uint8_t each : hotkey) server.key(each, true);
        const Instant start = std::chrono::steady_clock::now();
        server.key(hotkey[2], false);
        const Seen mapped = awaitChange(window == XCB_NONE ? finder : server, name, XCB_MAP_NOTIFY, window);
        // The first opening is another matter.
        if (round > 0) std::printf("%.3f\n", milliseconds(start, mapped.when));
        server.key(hotkey[1], false);
        server.key(hotkey[0], false);
        usleep(60'000);
        server.key(escape, true);
        server.key(escape, false);
        awaitChange(window == XCB_NONE ? finder : server, name, XCB_UNMAP_NOTIFY, mapped.window);
        if (round > 0) window = mapped.window;
        usleep(200'000);
    }
    return 0;
}

int measurePace(char** command) {
    const Server server;
    selectRawKeys(server);
    const pid_t child = startProgram(command);
    int events = 0;
    Instant first;
    Instant last;
    for (bool running = true;;) {
        if (running && waitpid(child, nullptr, WNOHANG) == child) running = false;
        const Instant now = std::chrono::steady_clock::now();
        // All that the program made has been sent by the server when it has been quiet for this long after its end.
        const auto event = server.next(now + std::chrono::milliseconds(running ? 50 : 300));
        if (!event && !running) break;
        if (!event || !isRawKey(*event)) continue;
        last = std::chrono::steady_clock::now();
        if (events++ == 0) first = last;
    }
    std::printf("events %d\nspan %.3f\n", events, milliseconds(first, last));
    return events > 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view what = count > 1 ? arguments[1] : "";
    if (what == "start" && count > 3) return measureStart(arguments[2], arguments + 3);
    if (what == "toggle" && count == 4) return measureToggle(arguments[2], std::atoi(arguments[3]));
    if (what == "midtext" && count > 4) return measureMidText(arguments[2], std::atoi(arguments[3]), arguments + 4);
    if (what == "pace" && count > 2) return measurePace(arguments + 2);
    std::fputs(
        "usage: bench-probe start NAME PROGRAM... | toggle NAME COUNT | midtext NAME COUNT PROGRAM... | "
        "pace PROGRAM...\n",
        stderr);
    return 2;
}

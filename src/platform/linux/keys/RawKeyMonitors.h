#pragma once
// The key monitors on X11. The global ones get the raw stream while another application has the focus; the local ones
// get what the toolkit delivers to Vantor's own windows, where they may swallow it. No key reaches both, Vantor's own
// posts reach none, and none is kept from anyone but on request. A lost connection is renewed, if need be by trying
// each second. Main thread.

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>

#include "platform/KeyMonitors.h"
#include "platform/linux/keys/KeyStream.h"

class QKeyEvent;

namespace vantor {

class RawKeyMonitors final : public QObject, public KeyMonitors {
public:
    // Watches the application object's key events; the references outlive the monitors.
    RawKeyMonitors(XConnection& connection, PostedKeyRecord& record);

    Subscription addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) override;
    Subscription addLocalMonitor(KeyEventMask mask, LocalHandler handler) override;
    Subscription withholdWithCommand(KeyCode keyCode) override;
    // False without raw events, and while the connection is lost.
    [[nodiscard]] bool available() const { return stream_.available(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    template <typename Handler>
    struct Monitor {
        KeyEventMask mask;
        Handler handler;
    };
    // What became of a key of the stream, for the moment when the toolkit delivers the same key.
    struct Seen {
        StreamedKey key;
        bool dispatched = false;
    };

    void listen();
    void reconnect();
    void poll();
    void handleStreamed(const StreamedKey& key);
    void dispatchGlobally(const KeyEvent& event);
    [[nodiscard]] bool ownWindowHasFocus() const;
    // Takes it out, with all that came before it: the toolkit delivers in the same order.
    [[nodiscard]] std::optional<Seen> take(std::uint8_t xKeycode, bool down, std::uint32_t time);
    void tellModifiers(Qt::KeyboardModifiers held);
    [[nodiscard]] bool swallowedLocally(const QKeyEvent& event);

    XConnection& connection_;
    PostedKeyRecord& record_;
    KeyStream stream_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer nextTry_;
    Subscription renewal_;
    bool refusalTold_ = false;
    int next_ = 0;
    std::map<int, Monitor<GlobalHandler>> global_;
    std::map<int, Monitor<LocalHandler>> local_;
    std::deque<Seen> seen_;
};

}  // namespace vantor

#include "platform/linux/keys/RawKeyMonitors.h"

#include <xcb/xcb.h>

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

#include "platform/KeyClasses.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/keys/SuperKeyGrab.h"

namespace vantor {
namespace {

// More than half a minute of typing into a window of ours; what is older never comes.
constexpr std::size_t seenLimit = 4096;

// A server that is full may have a place later; one that is gone is the toolkit's end, and so the program's.
constexpr std::chrono::seconds betweenTries{1};

}  // namespace

RawKeyMonitors::RawKeyMonitors(XConnection& connection, PostedKeyRecord& record)
    : connection_(connection), record_(record), stream_(connection, record) {
    if (connection.get()) {
        nextTry_.setSingleShot(true);
        nextTry_.setInterval(betweenTries);
        QObject::connect(&nextTry_, &QTimer::timeout, this, [this] { reconnect(); });
        renewal_ = connection.onRenewal([this] {
            nextTry_.stop();
            stream_.restart();
            listen();
        });
        listen();
        // A reply that was waited for, or a post, may have read events from the socket: it then stays silent about
        // them.
        if (auto* dispatcher = QAbstractEventDispatcher::instance())
            QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
                if (!stream_.readAhead()) return;
                QMetaObject::invokeMethod(this, [this] { poll(); }, Qt::QueuedConnection);
            });
    }
    if (QCoreApplication::instance()) QCoreApplication::instance()->installEventFilter(this);
}

void RawKeyMonitors::listen() {
    // It may be the old one that told of the loss, and is still at it.
    if (notifier_) {
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
    }
    followed_.clear();
    for (const QWindow* const window : QGuiApplication::allWindows()) followFocusOf(*window);
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        poll();
        if (connection_.isLost()) reconnect();
    });
}

void RawKeyMonitors::reconnect() {
    if (connection_.renew()) return;
    // A closed descriptor is readable for ever.
    notifier_->setEnabled(false);
    nextTry_.start();
}

Subscription RawKeyMonitors::addGlobalMonitor(KeyEventMask mask, GlobalHandler handler) {
    return global_.add({mask, std::move(handler)});
}

Subscription RawKeyMonitors::addLocalMonitor(KeyEventMask mask, LocalHandler handler) {
    return local_.add({mask, std::move(handler)});
}

void RawKeyMonitors::followFocusOf(const QWindow& window) {
    // The toolkit also knows the game's window, which ours belong to, and never exposes that.
    if (!connection_.get() || !window.isExposed()) return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    // Each picture may come with a notice.
    if (followed_.insert(id).second) stream_.followFocusOf(id);
}

Subscription RawKeyMonitors::withholdWithCommand(KeyCode keyCode) {
    const auto xKeycode = xKeycodeOf(keyCode);
    if (!xKeycode || !available()) return {};
    auto grab = std::make_shared<SuperKeyGrab>(*xKeycode);
    if (grab->holds()) return Subscription([grab]() mutable { grab.reset(); });
    if (!std::exchange(refusalTold_, true))
        std::fputs("vantor: another program holds Super with the key that pastes, so the game gets that key too\n",
                   stderr);
    return {};
}

void RawKeyMonitors::poll() {
    const auto handle = [this](const StreamedKey& key) { handleStreamed(key); };
    stream_.poll(handle);
    // The end of the stream has to be certain before a post can be called lost.
    if (!record_.empty()) stream_.pollToNow(handle);
}

void RawKeyMonitors::handleStreamed(const StreamedKey& key) {
    const bool dispatched = !key.ownPost && key.event && !key.toOwnWindow;
    seen_.push_back({key, dispatched});
    if (seen_.size() > seenLimit) seen_.pop_front();
    if (dispatched) dispatchGlobally(KeyEvent(*key.event));
}

void RawKeyMonitors::dispatchGlobally(const KeyEvent& event) {
    global_.visitWhile([&](const auto& monitor) {
        if (monitor.mask & maskOf(event.type)) monitor.handler(event);
        return true;
    });
}

std::optional<RawKeyMonitors::Seen> RawKeyMonitors::take(std::uint8_t xKeycode, bool down, std::uint32_t time) {
    const auto found = std::find_if(seen_.begin(), seen_.end(), [&](const Seen& seen) {
        return seen.key.xKeycode == xKeycode && seen.key.down == down && seen.key.time == time;
    });
    if (found == seen_.end()) return std::nullopt;
    std::optional<Seen> taken(std::move(*found));
    seen_.erase(seen_.begin(), found + 1);
    return taken;
}

// Keys that went down or up while another application had the keyboard were never delivered here: a click brings the
// modifiers that are held with it.
void RawKeyMonitors::tellModifiers(Qt::KeyboardModifiers held) {
    ModifierFlags flags = 0;
    if (held & Qt::ShiftModifier) flags |= modifier::shift;
    if (held & Qt::ControlModifier) flags |= modifier::control;
    if (held & Qt::AltModifier) flags |= modifier::option;
    if (held & Qt::MetaModifier) flags |= modifier::command;
    (void)tellLocally(KeyEvent{KeyEventType::flagsChanged, key_code::shift, flags, {}});
}

bool RawKeyMonitors::eventFilter(QObject* watched, QEvent* event) {
    // The server knows a window that it has exposed; one that is made now may still be on its way there.
    if (event->type() == QEvent::Expose && watched->isWindowType()) followFocusOf(*static_cast<QWindow*>(watched));
    if (event->type() == QEvent::MouseButtonPress && watched->isWindowType())
        tellModifiers(static_cast<QMouseEvent*>(event)->modifiers());
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    // The toolkit hands a key to the window first and then to its widgets; once is enough.
    if (!isKey || !watched->isWindowType()) return QObject::eventFilter(watched, event);
    return swallowedLocally(*static_cast<QKeyEvent*>(event));
}

bool RawKeyMonitors::swallowedLocally(const QKeyEvent& event) {
    const auto xKeycode = static_cast<std::uint8_t>(event.nativeScanCode());
    const bool down = event.type() == QEvent::KeyPress;
    if (xKeycode == 0 || (!down && event.isAutoRepeat())) return false;

    stream_.pollToNow([this](const StreamedKey& key) { handleStreamed(key); });
    const auto seen = take(xKeycode, down, static_cast<std::uint32_t>(event.timestamp()));
    if (seen && (seen->key.ownPost || seen->dispatched)) return false;
    // Without a raw stream the record can only be held against what the toolkit delivers.
    if (!stream_.available() && record_.claim(xKeycode, down)) return false;

    const auto keyEvent = seen ? seen->key.event : stream_.eventFor(xKeycode, down);
    if (!keyEvent) return false;
    return tellLocally(*keyEvent) == Passing::swallow;
}

KeyMonitors::Passing RawKeyMonitors::tellLocally(const KeyEvent& event) {
    auto passing = Passing::passOn;
    local_.visitWhile([&](const auto& monitor) {
        if (monitor.mask & maskOf(event.type)) passing = monitor.handler(event);
        return passing == Passing::passOn;
    });
    return passing;
}

}  // namespace vantor

#include "platform/linux/desktop/X11Screens.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <cmath>
#include <utility>

namespace vantor {
namespace {

Rect seamRect(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

// The toolkit scales a screen about its top left corner, which stays where it is in pixels.
QRect inPixels(const QScreen& screen) {
    const QRect frame = screen.geometry();
    return {frame.topLeft(), (QSizeF(frame.size()) * screen.devicePixelRatio()).toSize()};
}

const QScreen* screenAt(QPoint pixel) {
    const auto screens = QGuiApplication::screens();
    for (const QScreen* const screen : screens)
        if (inPixels(*screen).contains(pixel)) return screen;
    return nullptr;
}

}  // namespace

X11Screens::X11Screens(std::unique_ptr<XcbDesktop> desktop)
    : desktop_(std::move(desktop)), readable_(xcb_get_file_descriptor(desktop_->connection()), QSocketNotifier::Read) {
    QObject::connect(&readable_, &QSocketNotifier::activated, &connections_, [this] { drain(); });
    const auto follow = [this](const QScreen* screen) {
        QObject::connect(screen, &QScreen::geometryChanged, &connections_, [this] { announceLater(); });
        announceLater();
    };
    for (const QScreen* const screen : QGuiApplication::screens()) follow(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &connections_, follow);
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &connections_, [this] { announceLater(); });
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &connections_, [this] { announceLater(); });
}

X11Screens::~X11Screens() = default;

std::vector<Screen> X11Screens::all() const {
    std::vector<Screen> screens;
    const QScreen* const primary = QGuiApplication::primaryScreen();
    const auto add = [&](const QScreen& screen) {
        screens.push_back({seamRect(screen.geometry()), screen.name().toStdString()});
    };
    if (primary) add(*primary);
    for (const QScreen* const screen : QGuiApplication::screens())
        if (screen != primary) add(*screen);
    // Between two monitors there may be a moment without any.
    if (screens.empty()) screens.push_back({{0, 0, 1280, 800}, {}});
    return screens;
}

std::optional<Rect> X11Screens::frontmostWindow() const {
    if (!place_) return std::nullopt;
    const QRect place(place_->x, place_->y, place_->width, place_->height);
    const QScreen* const screen = screenAt(place.center());
    if (!screen) return place_;
    const double scale = screen->devicePixelRatio();
    const QPoint corner = screen->geometry().topLeft();
    const auto points = [scale](int pixels) { return static_cast<int>(std::lround(pixels / scale)); };
    return Rect{corner.x() + points(place.x() - corner.x()), corner.y() + points(place.y() - corner.y()),
                points(place.width()), points(place.height())};
}

void X11Screens::setFrontmostWindow(NativeWindow window) {
    // Only this connection's own choice of events changes.
    if (window_ != XCB_NONE) desktop_->select(window_, XCB_EVENT_MASK_NO_EVENT);
    window_ = static_cast<xcb_window_t>(window);
    if (window_ != XCB_NONE) desktop_->select(window_, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    look();
}

void X11Screens::drain() {
    bool moved = false;
    while (const auto event = owned(xcb_poll_for_event(desktop_->connection()))) {
        const auto type = event->response_type & 0x7f;
        moved |= type == XCB_CONFIGURE_NOTIFY || type == XCB_REPARENT_NOTIFY;
    }
    if (xcb_connection_has_error(desktop_->connection())) {
        readable_.setEnabled(false);
        return;
    }
    if (moved) look();
}

// A window that is gone was last seen where the next game is likely to come.
void X11Screens::look() {
    const auto place = desktop_->placeOnRoot(window_);
    // The question may have read the next event from the socket already.
    QMetaObject::invokeMethod(&connections_, [this] { drain(); }, Qt::QueuedConnection);
    if (!place) return;
    const Rect seen{place->x, place->y, place->width, place->height};
    if (std::exchange(place_, seen) != seen) announceLater();
}

// What another application in front hides is not moved to its monitor before.
void X11Screens::announceLater() {
    if (std::exchange(announcing_, true)) return;
    QMetaObject::invokeMethod(
        &connections_,
        [this] {
            announcing_ = false;
            changed_.announce();
        },
        Qt::QueuedConnection);
}

}  // namespace vantor

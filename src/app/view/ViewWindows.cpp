#include "app/view/ViewWindows.h"

#include <functional>
#include <utility>

#include "app/WindowPlaces.h"
#include "app/view/FloatWindow.h"
#include "app/view/IconMenu.h"
#include "app/view/IconWindow.h"
#include "app/view/MainWindow.h"
#include "app/view/TabPages.h"
#include "data/SettingKeys.h"
#include "input/view/EmojiCommandsView.h"
#include "timers/view/WatchedEventsView.h"

namespace vantor {

namespace {

constexpr int iconSize = 32;
constexpr int emojiLeft = 36;  // beside the icon

QRect toolkitRect(const Rect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

Rect seamRect(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

// Where a window stands, and how that is remembered.
struct Place {
    std::string_view key;
    int width = 0;
    int height = 0;
    bool keepsSize = false;     // only the top left corner is remembered
    bool keptBySystem = false;  // known once the window exists natively
};

class ViewWindow final : public AppWindow {
public:
    using Make = std::function<std::unique_ptr<OverlayWindow>()>;

    ViewWindow(OverlayWindows& overlayWindows, Make make, std::function<void(OverlayWindow&)> beforeMapping)
        : overlayWindows_(overlayWindows), make_(std::move(make)), beforeMapping_(std::move(beforeMapping)) {}

    void orderFront() override {
        if (!window_) window_ = make_();
        if (!window_->isVisible()) beforeMapping_(*window_);
        window_->orderFront();
        overlayWindows_.orderFront(static_cast<NativeWindow>(window_->winId()));
    }
    void orderOut() override {
        if (window_) window_->orderOut();
    }

private:
    OverlayWindows& overlayWindows_;
    Make make_;
    std::function<void(OverlayWindow&)> beforeMapping_;
    std::unique_ptr<OverlayWindow> window_;
};

void standAtRemembered(OverlayWindow& window, const Place& place, const Defaults& defaults, const Screens& screens) {
    const std::vector<Rect> frames = screens.frames();
    const auto stored = defaults.get<std::string>(place.key);
    const auto remembered = stored ? readFrame(*stored) : std::nullopt;
    Rect frame = remembered.value_or(centred({0, 0, place.width, place.height}, frames.front()));
    if (place.keepsSize) {
        frame.width = place.width;
        frame.height = place.height;
    }
    window.setGeometry(toolkitRect(broughtOntoScreen(frame, frames)));
}

void holdEmotes(FloatWindow& window, TypingPart& typing, DataPart& data, SettingsPart& settings) {
    Defaults& defaults = settings.defaults();
    window.setContent(new EmojiCommandsView(
        EmojiCommands(typing.clipboardManager(), defaults, data.clock()), defaults,
        [&window](QSize size) { window.fit(size); }, &window));
}

}  // namespace

std::unique_ptr<AppWindow> ViewWindows::make(AppWindowName name, AppObserver& appObserver) {
    if (!watched_) watched_ = std::make_unique<WatchedFeed>(timelineOf(appObserver, appObserver));
    const auto prepare = [this](WindowNature nature) {
        return [this, nature](WId window) { needs_.overlayWindows.prepare(static_cast<NativeWindow>(window), nature); };
    };
    Defaults& defaults = appObserver.defaults();
    const auto remembering = [this, &defaults](const std::shared_ptr<const Place>& place, ViewWindow::Make makeWindow) {
        return std::make_unique<ViewWindow>(
            needs_.overlayWindows,
            [&defaults, place, makeWindow = std::move(makeWindow)] {
                auto window = makeWindow();
                window->onPlaced([&defaults, place](const QRect& frame) {
                    // A place that cannot be stored is only forgotten; the store itself says why.
                    if (!place->keptBySystem) (void)defaults.setValue(place->key, writeFrame(seamRect(frame)));
                });
                return window;
            },
            [this, &defaults, place](OverlayWindow& window) {
                if (!place->keptBySystem) standAtRemembered(window, *place, defaults, needs_.screens);
            });
    };
    const auto atTopLeft = [this](OverlayWindow& window) {
        const Rect screen = needs_.screens.frames().front();
        window.move(screen.x, screen.y);
    };

    switch (name) {
        case AppWindowName::main:
            return remembering(
                std::make_shared<Place>(Place{settings::frameMain, 920, 600}), [this, &appObserver, prepare] {
                    return std::make_unique<MainWindow>(appObserver, needs_, *watched_, prepare(WindowNature::overlay));
                });
        case AppWindowName::icon:
            return std::make_unique<ViewWindow>(
                needs_.overlayWindows,
                [this, &appObserver, prepare] {
                    return std::make_unique<IconWindow>(
                        [&appObserver] { appObserver.iconPressed(); },
                        [this](QPoint place) { IconMenu::open(needs_.menuEntries(), place); },
                        prepare(WindowNature::floating));
                },
                atTopLeft);
        case AppWindowName::emoji:
            return std::make_unique<ViewWindow>(
                needs_.overlayWindows,
                [&appObserver, prepare] {
                    auto window = std::make_unique<FloatWindow>(QStringLiteral("Vantor emotes"), QSize(1, iconSize),
                                                                false, prepare(WindowNature::floating));
                    holdEmotes(*window, appObserver, appObserver, appObserver);
                    return window;
                },
                [this](OverlayWindow& window) {
                    const Rect screen = needs_.screens.frames().front();
                    static_cast<FloatWindow&>(window).standAt({screen.x + emojiLeft, screen.y});
                });
        case AppWindowName::watchedEvents: {
            auto place = std::make_shared<Place>(Place{settings::frameWatchedEvents, 250, 60, true});
            return remembering(place, [this, prepare, place] {
                const auto prepareAndPlace = [this, place,
                                              prepared = prepare(WindowNature::nonActivating)](WId native) {
                    prepared(native);
                    place->keptBySystem =
                        needs_.overlayWindows.keepFrame(static_cast<NativeWindow>(native), "WatchedEvents");
                };
                auto window = std::make_unique<FloatWindow>(QStringLiteral("Vantor watched events"), QSize(250, 60),
                                                            true, prepareAndPlace);
                FloatWindow& host = *window;
                host.setContent(new WatchedEventsView(*watched_, [&host](QSize size) { host.fit(size); }, &host));
                return window;
            });
        }
    }
    return nullptr;
}

}  // namespace vantor

#include "app/view/ViewWindows.h"

#include <functional>
#include <utility>

#include "app/FirstSteps.h"
#include "app/WindowPlaces.h"
#include "app/view/FloatWindow.h"
#include "app/view/IconBubble.h"
#include "app/view/IconMenu.h"
#include "app/view/IconWindow.h"
#include "app/view/MainWindow.h"
#include "app/view/TabPages.h"
#include "app/view/TypingLineView.h"
#include "data/SettingKeys.h"
#include "input/view/EmojiCommandsView.h"
#include "timers/view/WatchedEventsView.h"

namespace vantor {

namespace {

constexpr int iconSize = 32;
constexpr int emojiLeft = 36;  // beside the icon
constexpr int bubbleLeft = 34;
constexpr int typingTop = 8;

QRect toolkitRect(const Rect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

Rect seamRect(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

// Where a window stands, and how that is remembered.
struct Place {
    std::string_view key;
    int width = 0;
    int height = 0;
    bool keepsSize = false;     // only the top left corner is remembered
    bool keptBySystem = false;  // known once the window exists natively
    // As they were when the window was put there.
    std::vector<Screen> screens;
    Screen gamesScreen;
};

class ViewWindow final : public AppWindow {
public:
    using Make = std::function<std::unique_ptr<OverlayWindow>()>;
    using Stand = std::function<void(OverlayWindow&)>;

    ViewWindow(OverlayWindows& overlayWindows, Screens& screens, Make make, Stand stand)
        : overlayWindows_(overlayWindows), make_(std::move(make)), stand_(std::move(stand)) {
        screensChanged_ = screens.observe([this] {
            if (window_ && window_->isWanted()) stand_(*window_);
        });
    }

    void orderFront() override {
        if (!window_) {
            window_ = make_();
            window_->onOrderedFront(
                [this](WId native) { overlayWindows_.orderFront(static_cast<NativeWindow>(native)); });
        }
        if (!window_->isWanted()) stand_(*window_);
        window_->orderFront();
    }
    void orderOut() override {
        if (window_) window_->orderOut();
    }
    void takeFocus() override {
        if (window_) overlayWindows_.takeFocus(static_cast<NativeWindow>(window_->winId()));
    }
    void takeKeyboard() override {
        if (window_) window_->expectKeyboard();
        takeFocus();
    }

private:
    OverlayWindows& overlayWindows_;
    Make make_;
    Stand stand_;
    std::unique_ptr<OverlayWindow> window_;
    Subscription screensChanged_;
};

// The icon, and beside it what explains it for as long as that is wanted.
class ExplainedIcon final : public AppWindow {
public:
    ExplainedIcon(std::unique_ptr<AppWindow> icon, AppWindow& bubble, const bool& wanted)
        : icon_(std::move(icon)), bubble_(bubble), wanted_(wanted) {}

    void orderFront() override {
        icon_->orderFront();
        // The first time is its making: whether the game is in front is not known yet.
        if (std::exchange(made_, true) && wanted_) bubble_.orderFront();
    }
    void orderOut() override {
        icon_->orderOut();
        bubble_.orderOut();
    }
    void takeFocus() override { icon_->takeFocus(); }
    void takeKeyboard() override { icon_->takeKeyboard(); }

private:
    std::unique_ptr<AppWindow> icon_;
    AppWindow& bubble_;
    const bool& wanted_;
    bool made_ = false;
};

std::string storedPlaces(const Place& place, const Defaults& defaults) {
    return defaults.get<std::string>(place.key).value_or("");
}

// A place that cannot be stored is only forgotten; the store itself says why.
void remember(const Place& place, const Rect& frame, Defaults& defaults) {
    (void)defaults.setValue(place.key, withPlace(storedPlaces(place, defaults), frame, place.gamesScreen));
}

void standAtRemembered(OverlayWindow& window, Place& place, Defaults& defaults, const Screens& screens) {
    const std::vector<Screen> all = screens.all();
    const Screen game = screenOf(screens.frontmostWindow(), all);
    if (window.isVisible() && game == place.gamesScreen && all == place.screens) return;
    place.gamesScreen = game;
    place.screens = all;
    const std::string stored = storedPlaces(place, defaults);
    Rect frame = placeOn(game, all, stored, place.width, place.height);
    if (isPlainFrame(stored, frame)) remember(place, frame, defaults);
    if (place.keepsSize) {
        frame.width = place.width;
        frame.height = place.height;
    }
    window.place(toolkitRect(frame));
}

void holdEmotes(FloatWindow& window, TypingPart& typing, DataPart& data, SettingsPart& settings) {
    Defaults& defaults = settings.defaults();
    window.setContent(new EmojiCommandsView(
        EmojiCommands(typing.clipboardManager(), defaults, data.clock()), defaults,
        [&window](QSize size) { window.fit(size); }, &window));
}

}  // namespace

void ViewWindows::endBubble(Defaults& defaults) {
    if (!std::exchange(bubbleWanted_, false)) return;
    bubble_->orderOut();
    // One that cannot be stored explains the icon once more at the next start.
    (void)defaults.setValue(settings::explainedIcon, true);
}

std::unique_ptr<AppWindow> ViewWindows::make(AppWindowName name, AppObserver& appObserver) {
    if (!watched_) watched_ = std::make_unique<WatchedFeed>(timelineOf(appObserver, appObserver));
    const auto prepare = [this](WindowNature nature) {
        return [this, nature](WId window) { needs_.overlayWindows.prepare(static_cast<NativeWindow>(window), nature); };
    };
    Defaults& defaults = appObserver.defaults();
    const auto remembering = [this, &defaults](const std::shared_ptr<Place>& place, ViewWindow::Make makeWindow) {
        return std::make_unique<ViewWindow>(
            needs_.overlayWindows, needs_.screens,
            [&defaults, place, makeWindow = std::move(makeWindow)] {
                auto window = makeWindow();
                window->onPlaced([&defaults, place](const QRect& frame) {
                    if (!place->keptBySystem) remember(*place, seamRect(frame), defaults);
                });
                return window;
            },
            [this, &defaults, place](OverlayWindow& window) {
                if (!place->keptBySystem) standAtRemembered(window, *place, defaults, needs_.screens);
            });
    };
    const auto cornerOfScreen = [this] {
        const std::vector<Screen> all = needs_.screens.all();
        return toolkitRect(screenOf(needs_.screens.frontmostWindow(), all).frame).topLeft();
    };

    switch (name) {
        case AppWindowName::main:
            return remembering(std::make_shared<Place>(Place{settings::frameMain, 920, 600, false, false, {}, {}}),
                               [this, &appObserver, &defaults, prepare] {
                                   // Whoever opens the overlay has found the way.
                                   endBubble(defaults);
                                   return std::make_unique<MainWindow>(appObserver, needs_, *watched_,
                                                                       prepare(WindowNature::overlay));
                               });
        case AppWindowName::icon: {
            auto icon = std::make_unique<ViewWindow>(
                needs_.overlayWindows, needs_.screens,
                [this, &appObserver, &defaults, prepare] {
                    return std::make_unique<IconWindow>([&appObserver] { appObserver.iconPressed(); },
                                                        [this, &defaults](QPoint place) {
                                                            endBubble(defaults);
                                                            IconMenu::open(needs_.menuEntries(), place);
                                                        },
                                                        prepare(WindowNature::floating));
                },
                [cornerOfScreen](OverlayWindow& window) { window.move(cornerOfScreen()); });
            bubbleWanted_ = isIconUnexplained(defaults);
            if (!bubbleWanted_) return icon;
            bubble_ = std::make_unique<ViewWindow>(
                needs_.overlayWindows, needs_.screens,
                [this, &defaults, prepare] {
                    return std::make_unique<IconBubble>([this, &defaults] { endBubble(defaults); },
                                                        prepare(WindowNature::floating));
                },
                [cornerOfScreen](OverlayWindow& window) { window.move(cornerOfScreen() + QPoint(bubbleLeft, 0)); });
            return std::make_unique<ExplainedIcon>(std::move(icon), *bubble_, bubbleWanted_);
        }
        case AppWindowName::emoji:
            return std::make_unique<ViewWindow>(
                needs_.overlayWindows, needs_.screens,
                [&appObserver, prepare] {
                    auto window = std::make_unique<FloatWindow>(QStringLiteral("Vantor emotes"), QSize(1, iconSize),
                                                                false, prepare(WindowNature::floating));
                    holdEmotes(*window, appObserver, appObserver, appObserver);
                    return window;
                },
                [cornerOfScreen](OverlayWindow& window) {
                    static_cast<FloatWindow&>(window).standAt(cornerOfScreen() + QPoint(emojiLeft, 0));
                });
        case AppWindowName::watchedEvents: {
            auto place = std::make_shared<Place>(Place{settings::frameWatchedEvents, 250, 60, true, false, {}, {}});
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
                auto* const list = new WatchedEventsView(*watched_, [&host](QSize size) { host.fit(size); }, &host);
                host.setContent(list);
                host.onWanted([list](bool wanted) { list->setFollowing(wanted); });
                return window;
            });
        }
        case AppWindowName::typing:
            return std::make_unique<ViewWindow>(
                needs_.overlayWindows, needs_.screens,
                [&appObserver, prepare] {
                    auto window = std::make_unique<FloatWindow>(QStringLiteral("Vantor typing"), QSize(1, iconSize),
                                                                false, prepare(WindowNature::nonActivating));
                    // It lies where the player aims, and a window manager's frame would take the click.
                    window->setWindowFlag(Qt::WindowTransparentForInput);
                    window->setWindowFlag(Qt::BypassWindowManagerHint);
                    FloatWindow& host = *window;
                    auto* const line = new TypingLineView(
                        appObserver.clipboardManager(), [&host](QSize size) { host.fit(size); }, &host);
                    host.setContent(line);
                    host.onWanted([line](bool wanted) { line->setFollowing(wanted); });
                    return window;
                },
                [this](OverlayWindow& window) {
                    const std::vector<Screen> all = needs_.screens.all();
                    const QRect game = toolkitRect(screenOf(needs_.screens.frontmostWindow(), all).frame);
                    const int width = TypingLineView::longest().width();
                    static_cast<FloatWindow&>(window).standAt({game.center().x() - width / 2, game.top() + typingTop});
                });
    }
    return nullptr;
}

}  // namespace vantor

#include "app/view/TabPages.h"

#include <algorithm>
#include <utility>

#include "accounts/view/AccountsView.h"
#include "app/GameData.h"
#include "app/WindowPlaces.h"
#include "app/view/CatalogueView.h"
#include "catalogue/CatalogueWords.h"
#include "feedback/view/Support.h"
#include "input/view/HotkeyButton.h"
#include "input/view/HotkeyText.h"
#include "input/view/WaypointButton.h"
#include "timers/VisibleWindow.h"
#include "timers/view/BestiaryView.h"
#include "timers/view/TimerSettingsView.h"

namespace vantor {

namespace {

QRect gamesScreen(const Screens& screens) {
    const std::vector<Screen> all = screens.all();
    const Rect frame = screenOf(screens.frontmostWindow(), all).frame;
    return {frame.x, frame.y, frame.width, frame.height};
}

QString listedEvents(const TimelineSource& source, DataState state) {
    const auto timeline = source.timeline();
    if (state == DataState::loading) return QStringLiteral("The events are on their way.");
    if (state != DataState::ready || !timeline) return QStringLiteral("The events could not be loaded.");
    const int now = currentMinute(source.clock, source.clock.now());
    const double minutes = windowMinutes(source.defaults, WindowKind::shown);
    const auto count = std::ranges::count_if(
        timeline->events, [&](const TimelineEvent& occurrence) { return isVisible(occurrence, now, minutes); });
    return count == 1 ? QStringLiteral("1 event is listed.") : QStringLiteral("%1 events are listed.").arg(count);
}

}  // namespace

TimelineSource timelineOf(DataPart& part, SettingsPart& settings) {
    GameData& data = part.data();
    return {part.clock(), settings.defaults(), [&data] { return data.shownTimeline(); }, [&data] { data.followZone(); },
            [&data](std::function<void()> handler) { return data.observe(std::move(handler)); }};
}

TimersView* makeTimersTab(DataPart& data, TypingPart& typing, SettingsPart& settings, const ViewNeeds& needs,
                          const TabLinks& links, QWidget* parent) {
    GameData& gameData = data.data();
    const ChatLinkNeeds chatLink{typing.clipboardManager(), typing.pasteboard(), settings.defaults()};
    return new TimersView(
        {.source = timelineOf(data, settings),
         .state = [&gameData] { return gameData.timersState(); },
         .progress = [&gameData] { return gameData.eventsProgress(); },
         .names = gameData.achievementNames(),
         .makeWaypointButton = [&needs, chatLink](
                                   const QString& link,
                                   QWidget* row) { return new WaypointButton(link, chatLink, needs.scheduler, row); },
         .openWiki = [&needs,
                      open = links.openPage](const std::string& page) { open(wikiPageAddress(needs.webHosts, page)); },
         .emptyActions = links.emptyActions,
         .aged = [&gameData,
                  &clock = data.clock()] { return agedText(gameData.catalogueStatus()->facts, clock.now()); },
         .progressKnown = [&gameData] { return gameData.progressKnown(); }},
        parent);
}

QWidget* makeBestiaryTab(DataPart& data, const ViewNeeds& needs, const TabLinks& links, QWidget* parent) {
    GameData& gameData = data.data();
    return new BestiaryView(
        {.categories = [&gameData] { return gameData.beasts(); },
         .progress = [&gameData] { return gameData.bestiaryProgress(); },
         .state = [&gameData] { return gameData.bestiaryState(); },
         .observe = [&gameData](std::function<void()> handler) { return gameData.observe(std::move(handler)); },
         .lookUp = [&needs,
                    open = links.openPage](const std::string& family) { open(lookUpAddress(needs.webHosts, family)); },
         .emptyActions = links.emptyActions,
         .progressKnown = [&gameData] { return gameData.progressKnown(); }},
        parent);
}

QWidget* makeSupportTab(NetworkPart& network, TypingPart& typing, const ViewNeeds& needs, QWidget* parent) {
    return new Support({.message = {network.session(), network.mainThread(), needs.feedbackEndpoint},
                        .clipboardManager = typing.clipboardManager(),
                        .pasteboard = typing.pasteboard(),
                        .data = needs.supportData,
                        .openLink = needs.openLink},
                       parent);
}

SettingsView* makeSettingsTab(SettingsPart& settings, TypingPart& typing, AccountsPart& accounts, DataPart& data,
                              ApiKeyField& apiKey, const ViewNeeds& needs, const TabLinks& links, QWidget* parent) {
    const HotkeyNeeds hotkeys{settings.defaults(), typing.keyMonitors(),
                              [&needs](WId window, WindowNature nature) {
                                  needs.overlayWindows.prepare(static_cast<NativeWindow>(window), nature);
                              },
                              [&needs] { return gamesScreen(needs.screens); }, needs.pcKeyboards};
    const auto text = [](const std::string& host) { return QString::fromStdString(host); };
    GameData& gameData = data.data();
    return new SettingsView(
        {.defaults = settings.defaults(),
         .apiKey = apiKey,
         .makeHotkeyField =
             [hotkeys](const HotkeySetting& setting, QWidget* page) {
                 return new HotkeyButton(setting.message, setting.primaryKey, setting.secondaryKey, hotkeys, page);
             },
         .makeTimersPage =
             [&settings, &gameData](QWidget* page) {
                 const CatalogueNeeds catalogue{
                     .status = [&gameData] { return gameData.catalogueStatus(); },
                     .observe = [&gameData](auto handler) { return gameData.observe(std::move(handler)); },
                     .readPlayerFiles = [&gameData] { gameData.readPlayerFiles(); },
                     .rollBack = [&gameData] { gameData.rollBackCatalogue(); },
                     .defaults = settings.defaults()};
                 return new TimerSettingsView(
                     settings.defaults(), [&gameData] { gameData.reloadEvents(); }, page,
                     {.belowFilters = [&](QWidget* inside) { return new FestivalsHint(catalogue, inside); },
                      .atEnd = [&](QWidget* inside) { return new CatalogueView(catalogue, inside); }});
             },
         .makeAccountsPage =
             [&accounts](QWidget* page) {
                 return new AccountsView(
                     accounts.credentials(), [&accounts](const std::string& name) { accounts.fillCredentials(name); },
                     page);
             },
         .examineSystem = needs.examineSystem,
         .openLink = [&needs](const QString& address) { needs.openLink(address.toStdString()); },
         .helpHosts = {text(needs.webHosts.wiki), text(needs.accountSite)},
         .keyGain = {.sentence = [source = timelineOf(data, settings),
                                  &gameData] { return listedEvents(source, gameData.timersState()); },
                     .observe =
                         [&gameData](std::function<void()> handler) { return gameData.observe(std::move(handler)); },
                     .show = links.openTimers}},
        parent);
}

}  // namespace vantor

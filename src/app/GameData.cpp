#include "app/GameData.h"

#include <utility>

#include "catalogue/Days.h"
#include "data/SettingKeys.h"

namespace vantor {

namespace {

LoaderContext contextOf(const GameData::Needs& needs, UrlSession& session) {
    return {needs.queue, session, needs.defaults, needs.printLine};
}

LoaderContext contextOf(const GameData::Needs& needs) { return contextOf(needs, needs.session); }

}  // namespace

GameData::GameData(const Needs& needs)
    : defaults_(needs.defaults),
      clock_(needs.clock),
      queue_(needs.queue),
      mainThread_(needs.mainThread),
      names_(std::make_shared<AchievementNames>(
          [this](std::vector<std::int64_t> ids) { achievements_.fetch(std::move(ids)); })),
      progressSession_(needs.session),
      catalogue_(needs.catalogue, needs.defaults, needs.clock, needs.printLine, [this] { catalogueChanged(); }),
      eventsSections_(contextOf(needs), "EventsSection", needs.hosts.staticFiles + "/events.json", false, true),
      feed_(needs.clock, needs.defaults, needs.stop, [this] { announceLater(); }),
      beasts_(contextOf(needs), "BeastCategory", needs.hosts.staticFiles + "/categories/beasts.json", false, true),
      eventsAchievementsCompletition_(contextOf(needs), "AchievementCompletition",
                                      needs.hosts.api + "/v2/account/achievements", true, true),
      bestiaryCompletition_(contextOf(needs), "AchievementCompletition", needs.hosts.api + "/v2/account/achievements",
                            true, true),
      allCompletedAchievements_(contextOf(needs, progressSession_), "AchievementCompletition",
                                needs.hosts.api + "/v2/account/achievements", true, true),
      dailyCraft_(contextOf(needs), "String", needs.hosts.api + "/v2/dailycrafting", false, true),
      dailyBoss_(contextOf(needs), "String", needs.hosts.api + "/v2/worldbosses", false, true),
      dailyChest_(contextOf(needs), "String", needs.hosts.api + "/v2/mapchests", false, true),
      raids_(contextOf(needs), "Raid", needs.hosts.api + "/v2/raids?ids=all", false, true),
      weeklyFractals_(contextOf(needs), "AchievementCategory", needs.hosts.api + "/v2/achievements/categories?ids=261",
                      false, true),
      achievements_(contextOf(needs), "Achievement", needs.hosts.api + "/v2/achievements", false, true),
      account_(contextOf(needs), "Account", needs.hosts.api + "/v2/account", true, false),
      chain_(
          needs.queue,
          {allCompletedAchievements_, eventsSections_, beasts_, eventsAchievementsCompletition_, bestiaryCompletition_},
          [this](const auto& sections, const auto& progress) {
              return feed_.compute(catalogue_.over(sections), progress);
          },
          [this] { return !hasKey() && withoutProgress_; }) {
    eventsSections_.onChange([this] { announceLater(); });
    allCompletedAchievements_.onChange([this] { announceLater(); });
    beasts_.onChange([this] { announceLater(); });
    eventsAchievementsCompletition_.onChange([this] { announceLater(); });
    bestiaryCompletition_.onChange([this] { announceLater(); });
    achievements_.onChange([this] { announceNamesLater(); });
}

void GameData::start() {
    withoutProgress_ = defaults_.get<bool>(settings::timerWithoutProgress).value_or(false);
    began_ = mayLoad();
    readCatalogue();
    chain_.start();
}

void GameData::restart() {
    began_ = mayLoad();
    chain_.restart();
}

void GameData::showWithoutProgress() {
    withoutProgress_ = true;
    // What cannot be stored holds until the program ends; the store itself says why.
    (void)defaults_.setValue(settings::timerWithoutProgress, true);
    restart();
}

void GameData::readPlayerFiles() {
    queue_.post([this] {
        catalogue_.readPlayerFiles();
        catalogueChanged();
    });
}

void GameData::readCatalogue() {
    queue_.post([this] {
        catalogue_.read();
        catalogueChanged();
    });
}

void GameData::rollBackCatalogue() {
    queue_.post([this] {
        if (catalogue_.rollBack()) catalogueChanged();
    });
}

void GameData::updateCatalogueIfDue() {
    // Where there is no host, not even a thread wakes for it.
    if (catalogueStatus()->fetches) queue_.post([this] { catalogue_.askIfDue(); });
}

void GameData::catalogueChanged() {
    announceLater();
    chain_.catalogueChanged();
}

void GameData::followZone() {
    if (feed_.zoneChanged()) chain_.recompute();
    // A festival begins or ends.
    const auto status = catalogueStatus();
    if (status->dated && status->day != dayNumber(clock_.now())) chain_.recompute();
}

DataState GameData::timersState() const { return feed_.timeline() ? DataState::ready : whyNothing(); }

DataState GameData::bestiaryState() const {
    const auto beasts = beasts_.snapshot();
    if (!beasts.array->empty()) return DataState::ready;
    return beasts.activeRequests > 0 ? DataState::loading : whyNothing();
}

std::optional<DataState> GameData::whyNotBegun() const {
    if (!mayLoad()) return DataState::noKey;
    if (!began_) return DataState::keyIsNew;
    return std::nullopt;
}

DataState GameData::whyNothing() const {
    if (const auto why = whyNotBegun()) return *why;
    if (chain_.isAwaited() || allCompletedAchievements_.snapshot().activeRequests > 0 ||
        eventsSections_.snapshot().activeRequests > 0)
        return DataState::loading;
    switch (progressSession_.last()) {
        case KeyAnswer::refused:
            return DataState::keyRefused;
        case KeyAnswer::lacksScope:
            return DataState::keyLacksScope;
        case KeyAnswer::accepted:
            break;
    }
    return DataState::failed;
}

bool GameData::hasKey() const { return !defaults_.get<std::string>(settings::apiKey).value_or("").empty(); }

void GameData::announceLater() {
    mainThread_.post([changed = changed_] { changed->announce(); });
}

void GameData::announceNamesLater() {
    // As it is now: when the main thread comes to it, the next request may be under way already.
    mainThread_.post([names = std::weak_ptr(names_), changed = changed_, now = achievements_.snapshot()] {
        if (const auto alive = names.lock()) alive->loaded(*now.array, now.activeRequests > 0);
        changed->announce();
    });
}

}  // namespace vantor

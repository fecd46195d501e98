#include "data/DataChain.h"

#include <algorithm>
#include <unordered_set>

namespace vantor {

namespace {

using Progress = std::vector<AchievementCompletition>;

Progress keptTo(const Progress& progress, const std::vector<std::int64_t>& ids) {
    const std::unordered_set<std::int64_t> wanted(ids.begin(), ids.end());
    Progress kept;
    std::copy_if(progress.begin(), progress.end(), std::back_inserter(kept),
                 [&](const AchievementCompletition& entry) { return wanted.contains(entry.id); });
    return kept;
}

std::vector<std::int64_t> unlocksOf(const std::vector<BeastCategory>& categories) {
    std::vector<std::int64_t> ids;
    for (const BeastCategory& category : categories)
        for (const BeastRace& race : category.races)
            if (race.unlock) ids.push_back(*race.unlock);
    return ids;
}

}  // namespace

DataChain::DataChain(TaskQueue& queue, ChainLoaders loaders, ComputeTimeline computeTimeline,
                     WithoutProgress withoutProgress)
    : queue_(queue),
      loaders_(loaders),
      computeTimeline_(std::move(computeTimeline)),
      withoutProgress_(std::move(withoutProgress)) {
    const auto look = [this] {
        // Later: in the middle of a response the loaders look idle between one step of the chain and the next.
        if (restartWanted_) queue_.post([this] { restartWhenIdle(); });
    };
    loaders_.allCompletedAchievements.onChange(look);
    loaders_.eventsSections.onChange(look);
    loaders_.beasts.onChange(look);
    loaders_.eventsAchievementsCompletition.onChange(look);
    loaders_.bestiaryCompletition.onChange(look);
}

void DataChain::start() {
    isAwaited_ = true;
    queue_.post([this] { load(); });
}

void DataChain::restart() {
    isAwaited_ = true;
    queue_.post([this] {
        restartWanted_ = true;
        restartWhenIdle();
    });
}

void DataChain::restartWhenIdle() {
    if (!restartWanted_ || !idle()) return;
    restartWanted_ = false;
    empty();
    load();
}

bool DataChain::idle() const {
    return loaders_.allCompletedAchievements.idle() && loaders_.eventsSections.idle() && loaders_.beasts.idle() &&
           loaders_.eventsAchievementsCompletition.idle() && loaders_.bestiaryCompletition.idle();
}

void DataChain::empty() {
    loaders_.allCompletedAchievements.assignNow({});
    loaders_.eventsAchievementsCompletition.assignNow({});
    loaders_.bestiaryCompletition.assignNow({});
    loaders_.eventsSections.assignNow({});
    loaders_.beasts.assignNow({});
}

void DataChain::load() {
    if (withoutProgress_()) {
        hasProgress_ = false;
        loadCatalogue({});
        loadBestiary({});
    } else {
        loaders_.allCompletedAchievements.fetchNow({}, [this](Progress progress) {
            hasProgress_ = true;
            loadCatalogue(progress);
            loadBestiary(progress);
            return progress;
        });
    }
    isAwaited_ = false;
}

void DataChain::recompute() {
    queue_.post([this] {
        (void)computeTimeline_(loaders_.eventsSections.array(), loaders_.eventsAchievementsCompletition.array());
    });
}

void DataChain::catalogueChanged() {
    queue_.post([this] {
        const auto& sections = loaders_.eventsSections.array();
        // Not loaded yet: its load will compute.
        if (sections.empty()) return;
        const auto ids = computeTimeline_(sections, loaders_.eventsAchievementsCompletition.array());
        loaders_.eventsAchievementsCompletition.assignNow(keptTo(loaders_.allCompletedAchievements.array(), ids));
        (void)computeTimeline_(sections, loaders_.eventsAchievementsCompletition.array());
    });
}

void DataChain::loadCatalogue(const Progress& progress) {
    loaders_.eventsSections.assignNow({});
    loaders_.eventsSections.fetchNow({}, [this, progress](std::vector<EventsSection> sections) {
        // The first timeline of a run is computed before the events' progress is in place and takes no achievement as
        // completed. That order is deliberate.
        const auto ids = computeTimeline_(sections, loaders_.eventsAchievementsCompletition.array());
        loaders_.eventsAchievementsCompletition.assignNow(keptTo(progress, ids));
        return sections;
    });
}

void DataChain::loadBestiary(const Progress& progress) {
    loaders_.beasts.assignNow({});
    loaders_.beasts.fetchNow({}, [this, progress](std::vector<BeastCategory> categories) {
        loaders_.bestiaryCompletition.assignNow(keptTo(progress, unlocksOf(categories)));
        return categories;
    });
}

}  // namespace vantor

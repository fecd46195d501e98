#pragma once
// The start-up loads and how their results become the application's data: the whole progress first, then, in its
// completion, catalogue and bestiary, whose completions compute the timeline and cut the progress to what each of them
// names. A load that does not decode stops the chain at its step. Where the progress is not wanted, the chain begins
// with catalogue and bestiary and an empty progress. The loaders outlive the chain, the chain the queue's last task.
// Made before the loaders' first fetch.

#include <atomic>
#include <functional>

#include "data/Catalogue.h"
#include "data/JsonFetchable.h"
#include "data/WebApi.h"

namespace vantor {

struct ChainLoaders {
    JsonFetchable<AchievementCompletition>& allCompletedAchievements;
    JsonFetchable<EventsSection>& eventsSections;
    JsonFetchable<BeastCategory>& beasts;
    JsonFetchable<AchievementCompletition>& eventsAchievementsCompletition;
    JsonFetchable<AchievementCompletition>& bestiaryCompletition;
};

class DataChain {
public:
    // Queue: computes and publishes the timeline, returns the achievement ids of the active sections' events.
    using ComputeTimeline = std::function<std::vector<std::int64_t>(
        const std::vector<EventsSection>& sections, const std::vector<AchievementCompletition>& eventProgress)>;

    // Queue: whether this load goes without the player's progress.
    using WithoutProgress = std::function<bool()>;

    DataChain(
        TaskQueue& queue, ChainLoaders loaders, ComputeTimeline computeTimeline,
        WithoutProgress withoutProgress = [] { return false; });

    // Any thread.
    void start();
    // Any thread: the chain once more, from empty loaders and with the key that is stored by then. It begins when every
    // loader is idle; however often it is asked for meanwhile, it runs once.
    void restart();
    // Any thread: the timeline again from what is loaded, as one task; nothing is fetched.
    void recompute();
    // Any thread: the same after the catalogue to compute with became another one, with the progress on what it names
    // now.
    void catalogueChanged();
    // Any thread: a load was asked for and has not begun.
    [[nodiscard]] bool isAwaited() const { return isAwaited_; }
    // Any thread: whether what was loaded last had the player's progress.
    [[nodiscard]] bool hasProgress() const { return hasProgress_; }

private:
    using Progress = std::vector<AchievementCompletition>;

    void restartWhenIdle();
    [[nodiscard]] bool idle() const;
    void empty();
    void load();
    void loadCatalogue(const Progress& progress);
    void loadBestiary(const Progress& progress);

    TaskQueue& queue_;
    ChainLoaders loaders_;
    ComputeTimeline computeTimeline_;
    WithoutProgress withoutProgress_;
    std::atomic<bool> isAwaited_ = false;
    std::atomic<bool> hasProgress_ = false;
    bool restartWanted_ = false;  // queue
};

}  // namespace vantor

#pragma once
// The loaders of everything that comes over the web, and the chain that fills them at start. The object belongs to the
// main thread; the records live on the session queue, whose last task it outlives.

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/ApiRefusal.h"
#include "app/TimelineFeed.h"
#include "base/MainThread.h"
#include "base/Notice.h"
#include "catalogue/LayeredCatalogue.h"
#include "data/Catalogue.h"
#include "data/DataChain.h"
#include "data/JsonFetchable.h"
#include "data/WebApi.h"
#include "timers/AchievementNames.h"
#include "timers/DataState.h"

namespace vantor {

struct Hosts {
    std::string api;          // the game's public web API
    std::string staticFiles;  // where the maker's catalogue lies
};

class GameData {
public:
    struct Needs {
        Defaults& defaults;
        UrlSession& session;
        TaskQueue& queue;
        MainThread& mainThread;
        const Clock& clock;
        Hosts hosts;
        std::function<void(const std::string& line)> printLine;  // queue
        TimelineFeed::Stop stop;                                 // queue
        LayeredCatalogue::Needs catalogue{};                     // what lies over the embedded one
    };

    explicit GameData(const Needs& needs);

    // The first load of a run.
    void start();
    // All of it again, with the key that is stored by then: a new key was accepted. What is shown stays until then.
    void restart();
    // Loads without the player's progress for as long as there is no key, now and at later starts.
    void showWithoutProgress();
    // The timeline again from what is loaded; nothing is fetched. Call it when the player asks for it.
    void reloadEvents() { chain_.recompute(); }
    // The player's catalogue files again, and the timeline with them.
    void readPlayerFiles();
    // The same with the updates, as another process left them.
    void readCatalogue();
    // The catalogue as it was before the update in force.
    void rollBackCatalogue();
    // Asks for a newer catalogue if it is time to. For when the windows are there, and when the player looks.
    void updateCatalogueIfDue();
    // The timeline again if the zone's offset is another one than it was computed with, or the day's sections are.
    void followZone();

    // Why there is a timeline, or none, and the same of the bestiary.
    [[nodiscard]] DataState timersState() const;
    [[nodiscard]] DataState bestiaryState() const;
    [[nodiscard]] std::shared_ptr<const Timeline> timeline() const { return feed_.timeline(); }
    [[nodiscard]] std::shared_ptr<const Timeline> shownTimeline() const { return feed_.shown(); }
    [[nodiscard]] auto beasts() const { return beasts_.snapshot().array; }
    [[nodiscard]] auto eventsProgress() const { return eventsAchievementsCompletition_.snapshot().array; }
    [[nodiscard]] auto bestiaryProgress() const { return bestiaryCompletition_.snapshot().array; }
    [[nodiscard]] std::shared_ptr<const CatalogueStatus> catalogueStatus() const { return catalogue_.status(); }
    // Whether an achievement without a record is one that the player has not begun.
    [[nodiscard]] bool progressKnown() const { return chain_.hasProgress(); }
    // Names of achievements, loaded when they are needed first.
    [[nodiscard]] AchievementNames& achievementNames() { return *names_; }
    // On the main thread, after a change of the timeline or of the state.
    Subscription observe(Notice::Handler handler) { return changed_->observe(std::move(handler)); }

private:
    [[nodiscard]] bool hasKey() const;
    [[nodiscard]] bool mayLoad() const { return hasKey() || withoutProgress_; }
    // Nothing where a load is the question, under way or failed.
    [[nodiscard]] std::optional<DataState> whyNotBegun() const;
    [[nodiscard]] DataState whyNothing() const;
    void catalogueChanged();
    void announceLater();
    void announceNamesLater();

    Defaults& defaults_;
    const Clock& clock_;
    TaskQueue& queue_;
    MainThread& mainThread_;
    // Shared with what is posted to the main thread and not yet run.
    std::shared_ptr<Notice> changed_ = std::make_shared<Notice>();
    std::shared_ptr<AchievementNames> names_;
    ApiRefusal progressSession_;
    std::atomic<bool> withoutProgress_ = false;
    bool began_ = false;  // with a key, or without one where the progress is not wanted

    LayeredCatalogue catalogue_;
    JsonFetchable<EventsSection> eventsSections_;
    TimelineFeed feed_;
    JsonFetchable<BeastCategory> beasts_;
    JsonFetchable<AchievementCompletition> eventsAchievementsCompletition_;
    JsonFetchable<AchievementCompletition> bestiaryCompletition_;
    JsonFetchable<AchievementCompletition> allCompletedAchievements_;
    JsonFetchable<std::string> dailyCraft_;
    JsonFetchable<std::string> dailyBoss_;
    JsonFetchable<std::string> dailyChest_;
    JsonFetchable<Raid> raids_;
    JsonFetchable<AchievementCategory> weeklyFractals_;
    std::vector<Achievement> weeklyFractalAchievements_;
    JsonFetchable<Achievement> achievements_;
    JsonFetchable<Account> account_;
    DataChain chain_;
};

}  // namespace vantor

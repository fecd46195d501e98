// The session queue, the loaders and the chain under the thread sanitizer: calls, answers and readers on threads of
// their own, without the toolkit's. What must hold in every interleaving is counted, never timed; what a round does
// follows from its number. What belongs to the queue's thread is plain, so that the sanitizer sees who else comes to
// it.
#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <future>
#include <random>
#include <thread>

#include "data/DataChain.h"
#include "data/JsonFetchable.h"
#include "data/SessionQueue.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeUrlSession.h"

namespace vantor {

namespace {

using Ids = std::vector<std::int64_t>;

std::optional<std::string> bodyOf(const std::string& url) {
    if (url.ends_with("/events"))
        return R"([{"id": 1, "category": "c", "name": "n", "active": true, "segments": [],
                    "sequences": {"partial": [], "pattern": []}}])";
    if (url.ends_with("/beasts"))
        return R"([{"id": "x", "races": [{"id": "r", "icon": "", "description": "", "unlock": 2, "unlock_txt": ""}]}])";
    return R"([{"id": 1, "current": 1, "max": 1, "done": true}, {"id": 2, "current": 1, "max": 1, "done": true},
               {"id": 3, "current": 1, "max": 1, "done": true}])";
}

// The loaders of a program, whose requests wait until somebody answers them.
struct Scene {
    using Progress = JsonFetchable<AchievementCompletition>;

    Scene() { defaults.put(settings::apiKey, std::string("k")); }
    // Runs the queue empty, what its tasks post included.
    void drain() {
        for (int depth = 0; depth < 3; ++depth) {
            std::promise<void> reached;
            queue.post([&] { reached.set_value(); });
            reached.get_future().wait();
        }
    }
    // Answers until it is told to stop, now the oldest and now the newest; some of it badly when asked to.
    std::jthread service(unsigned seed, bool bad) {
        return std::jthread([this, bad, random = std::minstd_rand(seed)](const std::stop_token& stop) mutable {
            while (!stop.stop_requested()) {
                const auto pick = random();
                const auto answer = [&](const std::string& url) -> std::optional<std::string> {
                    if (bad && pick % 5 == 0) return std::nullopt;
                    return bad && pick % 7 == 0 ? "{" : bodyOf(url);
                };
                const std::size_t waiting = session.waiting();
                if (waiting == 0 || !session.answerBy(answer, pick % waiting)) std::this_thread::yield();
            }
        });
    }
    [[nodiscard]] static Ids idsOf(const Progress& loader) {
        Ids ids;
        const auto snapshot = loader.snapshot();
        for (const auto& each : *snapshot.array) ids.push_back(each.id);
        return ids;
    }

    SessionQueue queue;
    FakeUrlSession session{queue};
    FakeDefaults defaults;
    std::vector<std::string> lines;
    LoaderContext context{queue, session, defaults, [this](const std::string& line) { lines.push_back(line); }};
    Progress all{context, "AchievementCompletition", "https://host/all", true, true};
    JsonFetchable<EventsSection> sections{context, "EventsSection", "https://host/events", false, true};
    JsonFetchable<BeastCategory> beasts{context, "BeastCategory", "https://host/beasts", false, true};
    Progress events{context, "AchievementCompletition", "https://host/all", true, true};
    Progress unlocks{context, "AchievementCompletition", "https://host/all", true, true};
    int computations = 0;
    DataChain chain{queue, {all, sections, beasts, events, unlocks}, [this](const auto& list, const auto&) {
                        EXPECT_LE(list.size(), 1U);  // never two catalogues
                        ++computations;
                        return Ids{1, 3};
                    }};
};

}  // namespace

TEST(SessionQueue, RunsEachThreadsTasksInItsOrder) {
    Scene scene;
    std::array<int, 4> next{};
    {
        std::vector<std::jthread> posters;
        for (std::size_t poster = 0; poster < next.size(); ++poster)
            posters.emplace_back([&, poster] {
                for (int i = 0; i < 250; ++i) scene.queue.post([&next, poster, i] { EXPECT_EQ(next.at(poster)++, i); });
            });
    }
    scene.drain();
    EXPECT_EQ(next, (std::array{250, 250, 250, 250}));
}

TEST(SessionQueue, EndsAfterTheTaskUnderWayAndDropsTheRest) {
    for (int round = 0; round < 50; ++round) {
        std::promise<void> begun;
        std::promise<void> ending;
        bool ended = false;
        std::atomic<bool> restRan = false;
        const auto held = std::make_shared<int>();
        SessionQueue queue;
        queue.post([&] {
            begun.set_value();
            ending.get_future().wait();
            queue.post([&, held] { restRan = true; });
            ended = true;
        });
        begun.get_future().wait();
        queue.post([&, held] { restRan = true; });
        // The first task goes on once the queue takes no more.
        std::jthread release([&] {
            for (bool taken = true; taken; std::this_thread::yield()) {
                const auto probe = std::make_shared<int>();
                queue.post([probe] {});
                taken = probe.use_count() > 1;
            }
            ending.set_value();
        });
        queue.finish();
        EXPECT_TRUE(ended);
        queue.post([&, held] { restRan = true; });
        EXPECT_EQ(held.use_count(), 1);
        EXPECT_FALSE(restRan);
    }
}

// Started again with key after key, from two threads, while answers of the load before are on their way in any order:
// the last run is one with the last key, and each loader holds one copy.
TEST(DataChain, EndsWithTheLastKeyInEveryInterleaving) {
    for (unsigned round = 1; round <= 200; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Scene scene;
        {
            const auto service = scene.service(round, false);
            const std::jthread reader([&](const std::stop_token& stop) {
                while (!stop.stop_requested()) EXPECT_LE(scene.events.snapshot().array->size(), 2U);
            });
            scene.chain.start();
            const std::jthread other([&] {
                scene.chain.restart();
                scene.chain.recompute();
            });
            std::minstd_rand random(round + 1000);
            for (int key = 0; key < 6; ++key) {
                scene.defaults.put(settings::apiKey, std::to_string(key));
                scene.chain.restart();
                if (random() % 3 == 0) scene.chain.recompute();
                if (random() % 3 == 0) scene.drain();
            }
        }
        // The rest of the answers, late; each may bring the next step of the chain.
        for (scene.drain(); scene.session.answerBy(bodyOf); scene.drain()) {
        }
        std::string last;
        for (const auto& request : scene.session.requests())
            if (!request.headers.empty()) last = request.headers.front().second;
        ASSERT_EQ(last, "Bearer 5");
        ASSERT_EQ(Scene::idsOf(scene.all), (Ids{1, 2, 3}));
        ASSERT_EQ(Scene::idsOf(scene.events), (Ids{1, 3}));
        ASSERT_EQ(Scene::idsOf(scene.unlocks), (Ids{2}));
        ASSERT_EQ(scene.sections.snapshot().array->size(), 1U);
        ASSERT_EQ(scene.beasts.snapshot().array->size(), 1U);
        ASSERT_EQ(scene.all.snapshot().activeRequests, 0);
        ASSERT_TRUE(scene.lines.empty()) << scene.lines.front();
        scene.queue.finish();
    }
}

// Fetches, assignments and recomputations from two threads, good and bad answers from a third, a reader on a fourth; at
// the end answers on their way.
TEST(Loaders, BearEveryInterleaving) {
    for (unsigned round = 1; round <= 200; ++round) {
        Scene scene;
        int changes = 0;
        scene.events.onChange([&] { ++changes; });
        {
            const auto service = scene.service(round, true);
            const std::jthread reader([&](const std::stop_token& stop) {
                while (!stop.stop_requested())
                    for (const std::int64_t id : Scene::idsOf(scene.events)) EXPECT_GE(id, 0);
            });
            std::jthread caller([&] {
                for (std::int64_t i = 0; i < 5; ++i) {
                    scene.events.fetch({i, i + 1}, [&](auto records) {
                        ++scene.computations;
                        return records;
                    });
                    scene.events.assign({});
                }
            });
            scene.chain.start();
            for (std::int64_t i = 0; i < 3; ++i) {
                scene.chain.recompute();
                scene.events.assign({{.id = i, .bits = {}, .unlocked = {}, .repeated = {}}});
                scene.defaults.put(settings::apiKey, std::string(i == 1 ? "" : "k"));
            }
            caller.join();
            scene.drain();  // all is asked; the answers may still come
        }
        while (scene.session.answerBy(bodyOf)) {
        }
        if (round % 2 == 0) scene.drain();
        scene.queue.finish();
        while (scene.session.answerBy(bodyOf)) {
        }
        EXPECT_GE(scene.computations, 3);
        EXPECT_GE(changes, 8);  // the assignments at least
        for (const std::string& line : scene.lines)
            EXPECT_TRUE(line.starts_with("No data for Array<") || line.starts_with("Error filling Array<")) << line;
    }
}

}  // namespace vantor

// The session queue and the loaders under the thread sanitizer: calls, answers and readers on threads of their own,
// without the toolkit's. What must hold in every interleaving is counted, never timed.
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

using Loader = JsonFetchable<AchievementCompletition>;

void drain(TaskQueue& queue) {
    std::promise<void> reached;
    queue.post([&] { reached.set_value(); });
    reached.get_future().wait();
}

std::string oneEntry(int id) {
    return R"([{"id": )" + std::to_string(id) + R"(, "current": 1, "max": 1, "done": true}])";
}

// Answers all that is asked until told to stop, now the oldest and now the newest, some of it badly.
class Service {
public:
    Service(FakeUrlSession& session, unsigned seed)
        : session_(session), thread_([this, seed](std::stop_token stop) { run(stop, seed); }) {}

private:
    void run(const std::stop_token& stop, unsigned seed) {
        std::minstd_rand random(seed);
        while (!stop.stop_requested()) {
            const std::size_t waiting = session_.waiting();
            if (waiting == 0) {
                std::this_thread::yield();
                continue;
            }
            const auto pick = random();
            std::optional<std::string> body = oneEntry(static_cast<int>(pick % 100));
            if (pick % 5 == 0) body.reset();
            if (pick % 7 == 0) body = "{";
            session_.answer(std::move(body), pick % waiting);
        }
    }

    FakeUrlSession& session_;
    std::jthread thread_;
};

}  // namespace

TEST(SessionQueue, RunsEachThreadsTasksInItsOrder) {
    SessionQueue queue;
    std::vector<std::pair<int, int>> ran;  // of the queue's thread
    {
        std::vector<std::jthread> posters;
        for (int poster = 0; poster < 4; ++poster) {
            posters.emplace_back([&, poster] {
                for (int i = 0; i < 250; ++i) queue.post([&ran, poster, i] { ran.emplace_back(poster, i); });
            });
        }
    }
    drain(queue);
    ASSERT_EQ(ran.size(), 1000U);
    std::array<int, 4> next{};
    for (const auto& [poster, number] : ran) EXPECT_EQ(number, next.at(static_cast<std::size_t>(poster))++);
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

// Fetches, assignments and recomputations from two threads, answers out of order from a third, a reader on a fourth.
TEST(Loaders, BearEveryInterleaving) {
    constexpr unsigned rounds = 200;
    for (unsigned round = 0; round < rounds; ++round) {
        FakeDefaults defaults;
        defaults.put(settings::apiKey, std::string("k"));
        SessionQueue queue;
        FakeUrlSession session(queue);
        std::vector<std::string> lines;  // of the queue's thread, like the printing itself
        const LoaderContext context{queue, session, defaults, [&](const std::string& line) { lines.push_back(line); }};
        Loader all(context, "AchievementCompletition", "https://api.example/all", true, true);
        JsonFetchable<EventsSection> sections(context, "EventsSection", "https://files.example/e", false, true);
        JsonFetchable<BeastCategory> beasts(context, "BeastCategory", "https://files.example/b", false, true);
        Loader events(context, "AchievementCompletition", "https://api.example/all", true, true);
        Loader unlocks(context, "AchievementCompletition", "https://api.example/all", true, true);
        std::atomic<int> inside = 0;
        std::atomic<int> computations = 0;
        DataChain chain(queue, {all, sections, beasts, events, unlocks}, [&](const auto&, const auto&) {
            EXPECT_EQ(inside.fetch_add(1), 0);
            ++computations;
            EXPECT_EQ(inside.fetch_sub(1), 1);
            return std::vector<std::int64_t>{1, 2, 3};
        });
        std::atomic<int> changes = 0;
        events.onChange([&] { ++changes; });

        {
            std::jthread reader([&](const std::stop_token& stop) {
                while (!stop.stop_requested()) {
                    const auto snapshot = events.snapshot();
                    for (const auto& entry : *snapshot.array) EXPECT_GE(entry.id, 0);
                }
            });
            const Service service(session, round + 1);
            std::jthread caller([&] {
                for (int i = 0; i < 5; ++i) {
                    events.fetch({i, i + 1}, [&](auto records) {
                        EXPECT_EQ(inside.fetch_add(1), 0);
                        EXPECT_EQ(inside.fetch_sub(1), 1);
                        return records;
                    });
                    events.assign({});
                }
            });
            chain.start();
            for (int i = 0; i < 3; ++i) {
                chain.recompute();
                events.assign({{.id = i, .bits = {}, .unlocked = {}, .repeated = {}}});
                defaults.put(settings::apiKey, std::string(i == 1 ? "" : "k"));
            }
            caller.join();
            drain(queue);  // all is asked; the answers may still come
        }
        // Late answers after the service is gone, then an end with answers on their way.
        while (session.answer(oneEntry(7))) {
        }
        if (round % 2 == 0) drain(queue);
        queue.finish();
        while (session.answer(oneEntry(8))) {
        }
        EXPECT_GE(computations, round % 2 == 0 ? 3 : 0);
        EXPECT_GE(changes, 8);  // the assignments at least
        for (const std::string& line : lines) {
            EXPECT_TRUE(line.starts_with("No data for Array<") || line.starts_with("Error filling Array<")) << line;
        }
    }
}

}  // namespace vantor

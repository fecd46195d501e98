// The data chain started again from another thread, again and again, while answers come from a third and a reader looks
// on: whatever the order, the last run is one with the last key.
#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

#include "data/DataChain.h"
#include "data/SessionQueue.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeUrlSession.h"

namespace vantor {
namespace {

const std::string sections =
    R"([{"id":1,"category":"c","name":"n","active":true,"link":"x","segments":[],
        "sequences":{"partial":[],"pattern":[]}}])";
const std::string entryOne = R"([{"id":1,"current":1,"max":1,"done":true}])";

// Runs the queue empty, what its tasks post included.
void drain(TaskQueue& queue) {
    for (int turn = 0; turn < 3; ++turn) {
        std::promise<void> reached;
        queue.post([&] { reached.set_value(); });
        reached.get_future().wait();
    }
}

TEST(ChainRerun, EndsWithTheLastKeyInEveryInterleaving) {
    constexpr int rounds = 150;
    for (int round = 0; round < rounds; ++round) {
        FakeDefaults defaults;
        SessionQueue queue;
        FakeUrlSession session(queue);
        const LoaderContext context{queue, session, defaults, [](const std::string&) {}};
        using Progress = JsonFetchable<AchievementCompletition>;
        Progress all(context, "AchievementCompletition", "https://host/all", true, true);
        JsonFetchable<EventsSection> catalogue(context, "EventsSection", "https://host/events", false, true);
        JsonFetchable<BeastCategory> beasts(context, "BeastCategory", "https://host/beasts", false, true);
        Progress events(context, "AchievementCompletition", "https://host/all", true, true);
        Progress unlocks(context, "AchievementCompletition", "https://host/all", true, true);
        std::atomic<int> inside = 0;
        DataChain chain(queue, {all, catalogue, beasts, events, unlocks}, [&](const auto& list, const auto& progress) {
            EXPECT_EQ(inside.fetch_add(1), 0);
            EXPECT_EQ(list.size(), 1U);     // never two catalogues
            EXPECT_TRUE(progress.empty());  // never another key's
            EXPECT_EQ(inside.fetch_sub(1), 1);
            return std::vector<std::int64_t>{1};
        });
        std::atomic<bool> over = false;
        {
            // Answers by what was asked; the fake keeps its requests and its waiting ones in the same order.
            const std::jthread service([&] {
                std::size_t answered = 0;
                while (!over || session.waiting() > 0) {
                    const auto requests = session.requests();
                    if (answered == requests.size()) {
                        std::this_thread::yield();
                        continue;
                    }
                    const std::string& url = requests[answered].url;
                    if (!session.answer(url.ends_with("/all") ? entryOne : url.ends_with("/events") ? sections : "[]"))
                        continue;
                    ++answered;
                }
            });
            const std::jthread reader([&] {
                while (!over) EXPECT_LE(events.snapshot().array->size(), 1U);
            });
            chain.start();
            for (int key = 0; key < 6; ++key) {
                defaults.put(settings::apiKey, std::to_string(key));
                chain.restart();
                if ((key + round) % 3 == 0) std::this_thread::yield();
            }
            // Until a run with the last key has gone through.
            for (;;) {
                drain(queue);
                const auto requests = session.requests();
                const bool idle = session.waiting() == 0;
                drain(queue);
                if (idle && session.waiting() == 0 && session.requests().size() == requests.size() &&
                    !requests.empty() && events.snapshot().array->size() == 1 && beasts.snapshot().activeRequests == 0)
                    break;
                std::this_thread::yield();
            }
            over = true;
        }
        std::string last;
        for (const auto& request : session.requests())
            if (!request.headers.empty()) last = request.headers.front().second;
        EXPECT_EQ(last, "Bearer 5");
        EXPECT_EQ(catalogue.snapshot().array->size(), 1U);
        EXPECT_EQ(all.snapshot().array->size(), 1U);
        queue.finish();
    }
}

}  // namespace
}  // namespace vantor

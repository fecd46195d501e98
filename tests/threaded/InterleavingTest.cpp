// Two hundred seeded interleavings of fetch, assignment, reload and late answers. The order of the calls follows from
// the seed, which a failure names, so it can be run again; what the loaders hold at the end is compared with a model.
#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <future>
#include <random>
#include <thread>

#include "data/DataChain.h"
#include "data/JsonFetchable.h"
#include "data/SessionQueue.h"
#include "fake/FakeDefaults.h"

namespace vantor {

namespace {

using Loader = JsonFetchable<AchievementCompletition>;
using Ids = std::vector<std::int64_t>;
constexpr unsigned seeds = 200;

// Keeps the requests until they are answered, by place. Plain C++; any thread.
class HeldSession final : public UrlSession {
public:
    explicit HeldSession(TaskQueue& queue) : queue_(queue) {}

    void dataTask(UrlRequest request, Completion completion) override {
        const std::lock_guard lock(mutex_);
        waiting_.emplace_back(std::move(request.url), std::move(completion));
    }
    void statusTask(UrlRequest request, StatusCompletion) override {
        ADD_FAILURE() << "no loader asks " << request.url;
    }
    [[nodiscard]] std::vector<std::string> urls() const {
        const std::lock_guard lock(mutex_);
        std::vector<std::string> found;
        for (const auto& [url, completion] : waiting_) found.push_back(url);
        return found;
    }
    // The address that was answered; empty when none waits. `bodyOf` is asked with it.
    template <typename BodyOf>
    std::string answer(std::size_t pick, const BodyOf& bodyOf) {
        std::pair<std::string, Completion> taken;
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty()) return {};
            const auto place = waiting_.begin() + static_cast<std::ptrdiff_t>(pick % waiting_.size());
            taken = std::move(*place);
            waiting_.erase(place);
        }
        queue_.post([completion = std::move(taken.second), body = bodyOf(taken.first)] { completion(body); });
        return taken.first;
    }

private:
    TaskQueue& queue_;
    mutable std::mutex mutex_;
    std::deque<std::pair<std::string, Completion>> waiting_;
};

void drain(TaskQueue& queue) {
    std::promise<void> reached;
    queue.post([&] { reached.set_value(); });
    reached.get_future().wait();
}

AchievementCompletition entry(std::int64_t id) {
    return {.id = id, .bits = {}, .max = 1, .done = true, .unlocked = {}, .repeated = {}};
}

Ids idsOf(const std::vector<AchievementCompletition>& entries) {
    Ids ids;
    for (const auto& each : entries) ids.push_back(each.id);
    return ids;
}

std::string bodyOf(std::int64_t id) {
    return R"([{"id": )" + std::to_string(id) + R"(, "current": 1, "max": 1, "done": true}])";
}

// What a loader holds, by the rules in words: a fetch counts its own requests only; the answer that finds the count at
// one is the last and calls its own completion, unless it does not decode.
struct Model {
    Ids held;
    std::int64_t active = 0;
    std::vector<std::pair<std::string, std::int64_t>> waiting;  // address, completion
    std::vector<std::string> lines;

    void fetch(const Ids& ids, std::int64_t completion) {
        std::vector<std::string> urls;
        std::size_t wanted = 0;
        for (const std::int64_t id : ids) {
            if (std::find(held.begin(), held.end(), id) != held.end()) continue;
            const std::string text = std::to_string(id);
            if (wanted++ % 200 == 0)
                urls.push_back("https://api.example/all?ids=" + text);
            else
                urls.back() += "," + text;
        }
        if (urls.empty()) urls.emplace_back("https://api.example/all");
        active = static_cast<std::int64_t>(urls.size());
        for (const std::string& url : urls) waiting.emplace_back(url, completion);
    }
    void answer(std::size_t pick, int kind, std::int64_t id) {
        if (waiting.empty()) return;
        const auto place = waiting.begin() + static_cast<std::ptrdiff_t>(pick % waiting.size());
        const std::int64_t completion = place->second;
        waiting.erase(place);
        const bool last = active-- == 1;
        if (kind == 1) {
            lines.emplace_back("Error");
            return;
        }
        if (kind == 0)
            lines.emplace_back("No data");
        else
            held.push_back(id);
        if (last) held.push_back(completion);
    }
};

}  // namespace

TEST(Interleavings, LeaveWhatTheCallsInTheirOrderSay) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::minstd_rand random(seed);
        FakeDefaults defaults;
        defaults.put(settings::apiKey, std::string("k"));
        SessionQueue queue;
        HeldSession session(queue);
        std::vector<std::string> lines;
        Loader loader({queue, session, defaults, [&](const std::string& line) { lines.push_back(line); }},
                      "AchievementCompletition", "https://api.example/all", true, true);
        std::atomic<bool> wrong = false;
        std::jthread reader([&](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                const auto snapshot = loader.snapshot();
                for (const auto& each : *snapshot.array)
                    if (!each.done) wrong = true;
                std::this_thread::yield();
            }
        });
        Model model;
        for (std::int64_t step = 0; step < 40; ++step) {
            const auto pick = random();
            switch (pick % 4) {
                case 0: {
                    Ids ids;
                    // Now and then more than one request takes.
                    for (std::int64_t id = 0; id < static_cast<std::int64_t>(random() % (pick % 3 == 0 ? 450 : 5));
                         ++id)
                        ids.push_back(id * 3);
                    const std::int64_t completion = 10'000 + step;
                    model.fetch(ids, completion);
                    loader.fetch(ids, [completion](auto records) {
                        records.push_back(entry(completion));
                        return records;
                    });
                    break;
                }
                case 1: {
                    const auto id = static_cast<std::int64_t>(random() % 9) * 3;
                    model.held = {id};
                    loader.assign({entry(id)});
                    break;
                }
                default: {
                    drain(queue);
                    const auto place = random();
                    const int kind = static_cast<int>(random() % 5);
                    const auto id = static_cast<std::int64_t>(random() % 900);
                    model.answer(place, kind, id);
                    session.answer(place, [&](const std::string&) -> std::optional<std::string> {
                        if (kind == 0) return std::nullopt;
                        return kind == 1 ? "[{}]" : bodyOf(id);
                    });
                }
            }
        }
        drain(queue);
        std::vector<std::string> waiting;
        for (const auto& [url, completion] : model.waiting) waiting.push_back(url);
        const auto snapshot = loader.snapshot();
        ASSERT_EQ(idsOf(*snapshot.array), model.held);
        ASSERT_EQ(snapshot.activeRequests, model.active);
        ASSERT_EQ(session.urls(), waiting);
        ASSERT_EQ(lines.size(), model.lines.size());
        for (std::size_t at = 0; at < lines.size(); ++at)
            ASSERT_TRUE(lines[at].starts_with(model.lines[at])) << lines[at];
        ASSERT_FALSE(wrong) << "a reader saw half a record";
        queue.finish();
    }
}

// Reloads from two threads while answers of the load before are still on their way, in any order.
TEST(Interleavings, OfReloadsEndWithOneCopyOfTheData) {
    const auto body = [](const std::string& url) -> std::optional<std::string> {
        if (url.ends_with("/e"))
            return R"([{"id": 1, "category": "c", "name": "n", "active": true, "segments": [],
                        "sequences": {"partial": [], "pattern": []}}])";
        if (url.ends_with("/b"))
            return R"([{"id": "x", "races": [{"id": "r", "icon": "", "description": "", "unlock": 2, "unlock_txt": ""}]}])";
        return R"([{"id": 1, "current": 1, "max": 1, "done": true}, {"id": 2, "current": 1, "max": 1, "done": true},
                   {"id": 3, "current": 1, "max": 1, "done": true}])";
    };
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        FakeDefaults defaults;
        defaults.put(settings::apiKey, std::string("k"));
        SessionQueue queue;
        HeldSession session(queue);
        std::vector<std::string> lines;
        const LoaderContext context{queue, session, defaults, [&](const std::string& line) { lines.push_back(line); }};
        Loader all(context, "AchievementCompletition", "https://api.example/all", true, true);
        JsonFetchable<EventsSection> sections(context, "EventsSection", "https://files.example/e", false, true);
        JsonFetchable<BeastCategory> beasts(context, "BeastCategory", "https://files.example/b", false, true);
        Loader events(context, "AchievementCompletition", "https://api.example/all", true, true);
        Loader unlocks(context, "AchievementCompletition", "https://api.example/all", true, true);
        std::atomic<int> computations = 0;
        DataChain chain(queue, {all, sections, beasts, events, unlocks}, [&](const auto&, const auto&) {
            ++computations;
            return Ids{1, 3};
        });
        chain.start();
        {
            std::jthread answering([&, random = std::minstd_rand(seed)](const std::stop_token& stop) mutable {
                while (!stop.stop_requested())
                    if (random() % 3 == 0 || session.answer(random(), body).empty()) std::this_thread::yield();
            });
            std::jthread other([&] { chain.restart(); });
            std::minstd_rand random(seed + seeds);
            for (int call = 0; call < 4; ++call) {
                if (random() % 2) chain.restart();
                if (random() % 2) chain.recompute();
                if (random() % 2) drain(queue);
            }
            other.join();
        }
        // The rest of the answers, late; each may bring the next step of the chain.
        const auto settle = [&] {
            // An answer's task, then what it posts, then what that posts.
            for (int depth = 0; depth < 3; ++depth) drain(queue);
        };
        for (settle(); !session.answer(seed, body).empty(); settle()) {
        }
        ASSERT_EQ(idsOf(*all.snapshot().array), (Ids{1, 2, 3}));
        ASSERT_EQ(sections.snapshot().array->size(), 1U);
        ASSERT_EQ(beasts.snapshot().array->size(), 1U);
        ASSERT_EQ(idsOf(*events.snapshot().array), (Ids{1, 3}));
        ASSERT_EQ(idsOf(*unlocks.snapshot().array), (Ids{2}));
        ASSERT_EQ(all.snapshot().activeRequests, 0);
        ASSERT_GE(computations, 1);
        ASSERT_TRUE(lines.empty()) << lines.front();
        queue.finish();
    }
}

TEST(Interleavings, AfterTheEndOfTheQueueAskForNothing) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        FakeDefaults defaults;
        defaults.put(settings::apiKey, std::string("k"));
        SessionQueue queue;
        HeldSession session(queue);
        Loader loader({queue, session, defaults, [](const std::string&) {}}, "AchievementCompletition",
                      "https://api.example/all", true, true);
        const auto held = std::make_shared<int>();
        const auto keep = [held](auto records) { return records; };
        std::atomic<unsigned> calls = 0;
        {
            std::jthread caller([&, random = std::minstd_rand(seed)](const std::stop_token& stop) mutable {
                while (!stop.stop_requested()) {
                    loader.fetch({1}, keep);
                    loader.assign({entry(1)});
                    session.answer(random(), [](const std::string&) { return bodyOf(2); });
                    ++calls;
                }
            });
            while (calls < seed % 7) std::this_thread::yield();
            queue.finish();
            const auto asked = session.urls().size();
            const auto before = loader.snapshot();
            for (const unsigned seen = calls; calls < seen + 3;) std::this_thread::yield();
            ASSERT_LE(session.urls().size(), asked) << "a request after the end";
            ASSERT_EQ(loader.snapshot().array, before.array) << "a change after the end";
        }
        while (!session.answer(0, [](const std::string&) { return bodyOf(3); }).empty()) {
        }
        ASSERT_EQ(held.use_count(), 2) << "what was posted after the end is kept";  // held and keep
    }
}

}  // namespace vantor

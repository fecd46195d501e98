#pragma once
// What asks the web and stores settings, in a test's hands: nothing happens before the test answers and settles.

#include <gtest/gtest.h>

#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"

namespace vantor {

struct Services {
    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    std::vector<std::string> printed;
    const std::function<void(const std::string&)> print = [this](const std::string& line) { printed.push_back(line); };

    void storeKey(const std::string& key) { defaults.put(settings::apiKey, key); }
    // Runs what is posted to either thread, and what that posts.
    void settle() {
        do queue.runAll();
        while (mainThread.runAll() > 0);
    }
    void answer(std::optional<std::string> body, std::size_t place = 0) {
        ASSERT_TRUE(session.answer(std::move(body), place)) << "nobody asked";
        settle();
    }
    // What was asked for since the last look.
    std::vector<std::string> asked() {
        settle();
        std::vector<std::string> urls;
        const auto requests = session.requests();
        for (; seen_ < requests.size(); ++seen_) urls.push_back(requests[seen_].url);
        return urls;
    }

private:
    std::size_t seen_ = 0;
};

}  // namespace vantor

#pragma once
// The names of achievements, asked for when a player first looks at one. Each id is asked for once in a run, whether
// its name comes or not: the loader answers a request for nothing new with the whole endpoint. One request at a time.
// Main thread.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "data/WebApi.h"

namespace vantor {

class AchievementNames {
public:
    enum class Known {
        unasked,
        loading,
        yes,
        missed,  // asked for, and the answer did not have it or did not come
    };
    // Starts loading these, all of them new. Never with none.
    using Fetch = std::function<void(std::vector<std::int64_t> ids)>;

    explicit AchievementNames(Fetch fetch) : fetch_(std::move(fetch)) {}

    void need(std::span<const std::int64_t> ids);
    // Everything that the loader holds, and whether an answer is still to come.
    void loaded(const std::vector<Achievement>& held, bool waiting);

    [[nodiscard]] Known known(std::int64_t id) const;
    // Empty unless it is known.
    [[nodiscard]] const std::string& name(std::int64_t id) const;

private:
    void fetchNext();

    Fetch fetch_;
    std::unordered_set<std::int64_t> asked_;
    std::vector<std::int64_t> queued_;           // wait for the request under way to end
    std::unordered_set<std::int64_t> underWay_;  // of the one request
    std::unordered_map<std::int64_t, std::string> names_;
};

}  // namespace vantor

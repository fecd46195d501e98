// A player's whole achievement progress decoded: 8,000 records in at most 15 ms, and 25 times as many.

#include <benchmark/benchmark.h>

#include <string>

#include "data/Decoder.h"
#include "data/WebApi.h"

namespace vantor {
namespace {

// As the web API sends it: some records with the parts that are done, some with a number of repetitions.
std::string progressBody(std::int64_t records) {
    std::string body = "[";
    for (std::int64_t id = 1; id <= records; ++id) {
        if (id > 1) body += ',';
        body += R"({"id":)" + std::to_string(id);
        if (id % 3 == 0) body += R"(,"bits":[0,1,2,5,8])";
        body += R"(,"current":)" + std::to_string(id % 50) + R"(,"max":50,"done":)" + (id % 2 ? "true" : "false");
        if (id % 7 == 0) body += R"(,"repeated":3)";
        if (id % 11 == 0) body += R"(,"unlocked":true)";
        body += '}';
    }
    return body + "]";
}

void decodeProgress(benchmark::State& state) {
    const std::string body = progressBody(state.range(0));
    for (auto _ : state) {
        auto decoded = decodeJson<std::vector<AchievementCompletition>>(body);
        if (!decoded.value) return state.SkipWithError(decoded.error.c_str());
        benchmark::DoNotOptimize(decoded);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(body.size()) * state.iterations());
}
BENCHMARK(decodeProgress)->Arg(8000)->Arg(200000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor

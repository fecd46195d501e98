// A whole update of the catalogue, from its bytes to what may be computed with: at most 200 ms, off the main thread.

#include <benchmark/benchmark.h>

#include <fstream>
#include <iterator>
#include <string>

#include "catalogue/CatalogueUpdate.h"
#include "fake/SignedCatalogue.h"

namespace vantor {
namespace {

void wholeUpdate(benchmark::State& state) {
    std::ifstream file(VANTOR_SOURCE_DIR "/resources/catalogue/events.json");
    const std::string body{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const CatalogueSigner maker(1);
    const std::string signature = maker.sign(body, "catalogue=2 schema=1 valid-until=2026-12-01");
    for (auto _ : state) {
        auto update = readUpdate(signature, body, {maker.key()}, 48);
        if (!update.value) return state.SkipWithError(update.error.c_str());
        benchmark::DoNotOptimize(update);
    }
}
BENCHMARK(wholeUpdate)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor

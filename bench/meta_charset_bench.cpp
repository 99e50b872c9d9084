// The meta-tag charset scan on a 10 MiB page: an ordinary page with the tag at the end, and a hostile
// one made of "<m" without any ">".
#include <benchmark/benchmark.h>
#include <string>
#include "navigation/meta_charset.h"

namespace {

std::string OrdinaryPage()
{
    std::string page = "<html><head><title>t</title></head><body>";
    while (page.size() < (10u << 20)) page += "<p>Lorem <b>ipsum</b> <i>dolor</i> sit amet, <a href=\"x\">more</a></p>\n";
    return page + "<meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\"></body></html>";
}

std::string HostilePage()
{
    std::string page = "<meta";
    while (page.size() < (10u << 20)) page += "<m";
    return page;
}

void Scan(benchmark::State& state, const std::string& page)
{
    for (auto _ : state) benchmark::DoNotOptimize(tov::meta::FindMetaCharset(page));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(page.size()));
}

void BM_MetaScanOrdinary(benchmark::State& state) { static const std::string p = OrdinaryPage(); Scan(state, p); }
void BM_MetaScanHostile(benchmark::State& state) { static const std::string p = HostilePage(); Scan(state, p); }

} // namespace

BENCHMARK(BM_MetaScanOrdinary);
BENCHMARK(BM_MetaScanHostile);
BENCHMARK_MAIN();

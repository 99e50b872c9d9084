// Throughput of UnescapeData (vector scan and portable scan) on a realistic form post and on adversarial
// data, beside libcurl's unescaping of the same realistic bytes (when available) and memcpy, all measured
// in the same run. Prints the figures and the ratios.
#include <benchmark/benchmark.h>
#include <algorithm>
#include <ctime>
#include <functional>
#include <initializer_list>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include "bench/form_post.h"
#include "navigation/unescape.h"
#include "unescape_reference.h"
#ifdef TOV_BENCH_CURL
#include <curl/curl.h>
#endif

namespace {

const std::string& RealisticPost()
{
    static const std::string data = tovbench::RealisticPost();
    return data;
}

// 4 MiB of references and openers after "+" that make a naive terminator search rescan the rest of the
// data every time: first references ended only by the least preferred terminators (the preferred ones
// occur nowhere), then openers with no terminator at all after them. A single terminator at the very end
// would not do: the first reference would reach it and swallow the rest.
const std::string& AdversarialData()
{
    static const std::string data = [] {
        std::string s;
        while (s.size() < (2u << 20)) s += "+&#65%3d+%26%2366%3D";
        while (s.size() < (4u << 20) - 16) s += "+&#1+%26%231";
        return s;
    }();
    return data;
}

void Unescape(benchmark::State& state, const std::string& input)
{
    std::string out(input.size() + 1, '\0');
    for (auto _ : state) {
        benchmark::DoNotOptimize(tov::url::UnescapeData(input.data(), input.size(), out.data(), 0, tovtest::Latin1()));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(input.size()));
}

void BM_UnescapeRealistic(benchmark::State& state) { Unescape(state, RealisticPost()); }
void BM_UnescapePortableRealistic(benchmark::State& state)
{
    const std::string& input = RealisticPost();
    std::string out(input.size() + 1, '\0');
    for (auto _ : state) {
        benchmark::DoNotOptimize(tov::url::UnescapeDataPortable(input.data(), input.size(), out.data(), 0, tovtest::Latin1()));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(input.size()));
}
void BM_UnescapeAdversarial(benchmark::State& state) { Unescape(state, AdversarialData()); }

void BM_MemcpyRealistic(benchmark::State& state)
{
    const std::string& input = RealisticPost();
    std::string out(input.size(), '\0');
    for (auto _ : state) {
        std::memcpy(out.data(), input.data(), input.size());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(input.size()));
}

#ifdef TOV_BENCH_CURL
void BM_CurlUnescapeRealistic(benchmark::State& state)
{
    const std::string& input = RealisticPost();
    CURL* curl = curl_easy_init();
    for (auto _ : state) {
        int n = 0;
        char* out = curl_easy_unescape(curl, input.data(), static_cast<int>(input.size()), &n);
        benchmark::DoNotOptimize(out);
        curl_free(out);
    }
    curl_easy_cleanup(curl);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(input.size()));
}
BENCHMARK(BM_CurlUnescapeRealistic);
#endif

BENCHMARK(BM_UnescapeRealistic);
BENCHMARK(BM_UnescapePortableRealistic);
BENCHMARK(BM_UnescapeAdversarial);
BENCHMARK(BM_MemcpyRealistic);

// Seconds per byte of each measured function: the best of several samples of about 64 MiB each, the
// functions taking turns, so that a disturbance of a few hundred milliseconds (a shared machine has them)
// slows one sample of each rather than every sample of one. Processor time rather than wall time: on a
// shared machine a sample of several milliseconds is nearly always interrupted, a short one not.
struct Measured {
    const std::string& input;
    std::function<void()> run;
    double best = 1e9;
};

void MeasureInTurns(std::initializer_list<Measured*> all, int rounds = 15)
{
    for (int round = 0; round < rounds; ++round) {
        for (Measured* m : all) {
            const int repeats = static_cast<int>(std::max<size_t>(1, (64u << 20) / m->input.size()));
            const std::clock_t t0 = std::clock();
            for (int r = 0; r < repeats; ++r) m->run();
            const double s = static_cast<double>(std::clock() - t0) / CLOCKS_PER_SEC;
            m->best = std::min(m->best, s / (static_cast<double>(m->input.size()) * repeats));
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    const std::string& real = RealisticPost();
    const std::string& adv = AdversarialData();
    std::string out(adv.size() + 1, '\0');
    Measured ours{real, [&] { tov::url::UnescapeData(real.data(), real.size(), out.data(), 0, tovtest::Latin1()); }};
    Measured adversarial{adv, [&] { tov::url::UnescapeData(adv.data(), adv.size(), out.data(), 0, tovtest::Latin1()); }};
    Measured portable{real, [&] { tov::url::UnescapeDataPortable(real.data(), real.size(), out.data(), 0, tovtest::Latin1()); }};
    Measured copy{real, [&] {
                      std::memcpy(out.data(), real.data(), real.size());
                      benchmark::ClobberMemory();
                  }};
#ifdef TOV_BENCH_CURL
    CURL* curl = curl_easy_init();
    Measured curlUnescape{real, [&] {
                              int n = 0;
                              curl_free(curl_easy_unescape(curl, real.data(), static_cast<int>(real.size()), &n));
                          }};
    MeasureInTurns({&ours, &adversarial, &portable, &copy, &curlUnescape});
    curl_easy_cleanup(curl);
#else
    MeasureInTurns({&ours, &adversarial, &portable, &copy});
#endif
    std::printf("\nrealistic form post: %.2f GB/s (target >= 3 GB/s); portable scan %.2f GB/s\n", 1e-9 / ours.best, 1e-9 / portable.best);
#ifdef TOV_BENCH_CURL
    std::printf("libcurl on the same bytes: %.2f GB/s; ours %.2fx as fast (target >= 2.5x)\n", 1e-9 / curlUnescape.best,
                curlUnescape.best / ours.best);
#endif
    std::printf("memcpy of the same bytes: %.2f GB/s (yardstick only)\n", 1e-9 / copy.best);
    std::printf("adversarial per byte / realistic per byte: %.2fx (target <= 3x)\n", adversarial.best / ours.best);
    return 0;
}

// Building icon replies: many small icons, and one icon whose name is 10 MiB; the reply grows by
// concatenation, so both should stay linear in the reply's size.
#include <benchmark/benchmark.h>
#include <string>
#include "hosting/icon_reply.h"

namespace {

void BM_IconReplyManyIcons(benchmark::State& state)
{
    const int icons = static_cast<int>(state.range(0));
    size_t size = 0;
    for (auto _ : state) {
        tov::icons::IconReply reply;
        reply.Open();
        for (int i = 0; i < icons; ++i) reply.AddIcon(L"icon_name", L"12", L"<Desc font=\"TOV Icons\" glyph=\"&#xE001;\"/>");
        reply.Close();
        size = reply.Text().size();
        benchmark::DoNotOptimize(reply.Text().data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(size * sizeof(wchar_t)));
}

void BM_IconReplyHugeName(benchmark::State& state)
{
    static const std::wstring name(10u << 20, L'n');
    for (auto _ : state) {
        tov::icons::IconReply reply;
        reply.Open();
        reply.AddIcon(name, L"12", L"");
        reply.Close();
        benchmark::DoNotOptimize(reply.Text().data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(name.size() * sizeof(wchar_t)));
}

void BM_ClassifyIconChild(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(tov::icons::ClassifyIconChild(L"FONT_SIZE"));
        benchmark::DoNotOptimize(tov::icons::ClassifyIconChild(L"Description"));
    }
}

} // namespace

BENCHMARK(BM_IconReplyManyIcons)->Arg(10)->Arg(5000);
BENCHMARK(BM_IconReplyHugeName);
BENCHMARK(BM_ClassifyIconChild);
BENCHMARK_MAIN();

#pragma once
// The benchmarks' realistic form post: ~1 MiB of form fields with words, "+", %XX escapes and
// %26%23NNNN%3B references, about 10% escaped bytes. The same bytes every time.
#include <random>
#include <string>

namespace tovbench {

inline std::string RealisticPost()
{
    std::mt19937 rng(42);
    std::string s;
    const char* words[] = {"customer", "order", "Muller", "street", "amount", "currency", "remark", "delivery"};
    int field = 0;
    while (s.size() < (1u << 20)) {
        s += (field ? "&f" : "f") + std::to_string(field) + "=";
        ++field;
        for (int w = 0; w < 6; ++w) {
            s += words[rng() % 8];
            switch (rng() % 10) {
            case 0: s += "%26%23" + std::to_string(256 + rng() % 9000) + "%3B"; break;
            case 1: case 2: s += "%E4%F6"; break;
            case 3: s += "%2C"; break;
            default: s += "+"; break;
            }
        }
    }
    return s;
}

} // namespace tovbench

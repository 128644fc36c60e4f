// textBench.cpp - reading and printing numbers, beside the C library doing the same.
#include "util/number/format.h"
#include "util/text/scanline.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

using namespace plw;

namespace {

constexpr int numbersPerLine = 10;

// Numbers of everyday size, from 0.001 to a million, of both signs.
double everydayNumber(std::mt19937_64 &random) {
    const double size = std::pow(10, std::uniform_real_distribution(-3.0, 6.0)(random));
    return random() % 2 ? size : -size;
}

// A million lines of ten numbers with the given number of digits, in one text.
const std::string &lines(int digits) {
    static std::string text[18];
    std::string &t = text[digits];
    if (t.empty()) {
        std::mt19937_64 random(1);
        for (int i = 0; i < 1000000 * numbersPerLine; ++i) {
            char number[40];
            std::snprintf(number, sizeof number, "%.*g", digits, everydayNumber(random));
            t += number;
            t += (i + 1) % numbersPerLine ? ' ' : '\n';
        }
    }
    return t;
}

void BM_scanline(benchmark::State &state) {
    const std::string &text = lines(static_cast<int>(state.range(0)));
    double values[numbersPerLine];
    while (state.KeepRunning()) {
        for (const char *p = text.c_str(); *p != '\0';) {
            int count;
            p = scanline(p, values, numbersPerLine, &count);
            benchmark::DoNotOptimize(values);
        }
    }
}

void BM_strtodLoop(benchmark::State &state) {
    const std::string &text = lines(static_cast<int>(state.range(0)));
    double values[numbersPerLine];
    while (state.KeepRunning()) {
        for (const char *p = text.c_str(); *p != '\0';) {
            for (double &value : values) {
                char *end;
                value = std::strtod(p, &end);
                p = end;
            }
            ++p;
            benchmark::DoNotOptimize(values);
        }
    }
}

// A million numbers of 1 to 15 digits and, one in eight, of all the digits that a double has.
const std::vector<double> &mixedNumbers() {
    static std::vector<double> numbers;
    if (numbers.empty()) {
        std::mt19937_64 random(2);
        for (int i = 0; i < 1000000; ++i) {
            const double x = everydayNumber(random);
            char text[40];
            std::snprintf(text, sizeof text, "%.*g", static_cast<int>(1 + random() % 15), x);
            numbers.push_back(random() % 8 ? std::strtod(text, nullptr) : x);
        }
    }
    return numbers;
}

void BM_stringOfDouble(benchmark::State &state) {
    const std::vector<double> &numbers = mixedNumbers();
    while (state.KeepRunning())
        for (const double x : numbers) benchmark::DoNotOptimize(*stringOfDouble(x));
}

void BM_FormatOfRealAndSnprintf(benchmark::State &state) {
    const std::vector<double> &numbers = mixedNumbers();
    static char text[100];
    while (state.KeepRunning()) {
        for (const double x : numbers) {
            int width;
            int precision;
            char exponential;
            FormatOfReal(x, 20, &width, &precision, &exponential);
            std::snprintf(text, sizeof text, exponential ? "%*.*e" : "%*.*f", width, precision, x);
            benchmark::DoNotOptimize(text);
        }
    }
}

BENCHMARK(BM_scanline)->ArgName("digits")->Arg(6)->Arg(10)->Arg(17)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_strtodLoop)
    ->ArgName("digits")
    ->Arg(6)
    ->Arg(10)
    ->Arg(17)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_stringOfDouble)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FormatOfRealAndSnprintf)->Unit(benchmark::kMillisecond);

} // namespace

// SPDX-License-Identifier: MIT
// Measures conversions of pixel formats at 5 megapixels, compared with a memcpy of as many bytes
// and with the plain loop. The three run alternately. "1" is the processor time on one core, "all"
// the elapsed time on all cores.
#include "benchmarks/PlainLoops.h"
#include "benchmarks/Turns.h"
#include "library/convert/Convert.h"

#include <benchmark/benchmark.h>
#include <opencv2/core/utility.hpp>

#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using orvalis::ImageView;
using orvalis::PixelFormat;
using orvalis::PixelKind;

constexpr std::uint32_t width = 2448;
constexpr std::uint32_t height = 2048;
constexpr std::size_t pixels = std::size_t{width} * height;
constexpr int iterations = 200;

/// Memory for the largest images and copies, written once so that no measurement includes page
/// faults.
struct Memory {
    std::vector<std::uint8_t> in = std::vector<std::uint8_t>(pixels * 4);
    std::vector<std::uint8_t> out = std::vector<std::uint8_t>(pixels * 4);
    std::vector<std::uint8_t> scratch = std::vector<std::uint8_t>(pixels);
    Memory()
    {
        std::uint32_t state = 1;
        for (std::uint8_t &byte : in) {
            state = state * 1664525U + 1013904223U;
            byte = static_cast<std::uint8_t>(state >> 24);
        }
    }
    std::uint16_t *inWords() { return reinterpret_cast<std::uint16_t *>(in.data()); }
    std::uint16_t *outWords() { return reinterpret_cast<std::uint16_t *>(out.data()); }
};

Memory &memory()
{
    static Memory all;
    return all;
}

/// A conversion and its reference.
struct Conversion {
    std::string name;
    std::size_t bytes; ///< read and written, for all pixels
    std::function<void()> convert;
    std::function<void()> plain;
};

void run(benchmark::State &state, const Conversion &conversion, bool oneCore)
{
    cv::setNumThreads(oneCore ? 1 : -1);
    const clockid_t clock = oneCore ? CLOCK_THREAD_CPUTIME_ID : CLOCK_MONOTONIC;
    Memory &m = memory();
    const auto copy = [&] { std::memcpy(m.out.data(), m.in.data(), conversion.bytes / 2); };
    std::vector<double> convert, copied, plain;
    for (auto _ : state) {
        copied.push_back(timed(clock, copy));
        convert.push_back(timed(clock, conversion.convert));
        plain.push_back(timed(clock, conversion.plain));
        state.SetIterationTime(convert.back());
    }
    state.counters["Gpixel/s"] = static_cast<double>(pixels) / median(convert) * 1e-9;
    state.counters["x_memcpy"] = medianRatio(convert, copied);
    state.counters["x_plain"] = medianRatio(convert, plain);
}

ImageView viewOf(std::string_view format)
{
    const PixelFormat *found = orvalis::findPixelFormat(format);
    return {found, memory().in.data(), memory().in.size(), width, height};
}

Conversion toRgb(const std::string &format, std::size_t bytesIn, std::function<void()> plain)
{
    const auto convert = [image = viewOf(format)] {
        (void)toRgb8(image, memory().out.data(), memory().scratch.data());
    };
    return {format + " to RGB", pixels * (bytesIn + 3), convert, std::move(plain)};
}

/// Deep mosaics are reduced to 8 bits first, which reads and writes another plane.
Conversion bayer(const std::string &order, PixelKind kind, bool deep)
{
    Memory &m = memory();
    const auto plain = [&m, kind, deep] {
        const std::uint8_t *samples = m.in.data();
        if (deep) {
            plain::upperEight(m.inWords(), pixels, m.scratch.data());
            samples = m.scratch.data();
        }
        plain::demosaic(kind, samples, width, height, m.out.data());
    };
    return toRgb("Bayer" + order + (deep ? "12" : "8"), deep ? 4 : 1, plain);
}

Conversion unpacked(const std::string &format, unsigned depth)
{
    Memory &m = memory();
    return {format + " unpacked", pixels * depth / 8 + pixels * 2,
            [image = viewOf(format), &m] { (void)unpackToWords(image, m.outWords()); },
            [depth, &m] { plain::unpack(depth, m.in.data(), pixels, m.outWords()); }};
}

std::vector<Conversion> conversions()
{
    Memory &m = memory();
    std::vector<Conversion> all{
        {"12 to 8 bits", pixels * 3,
         [image = viewOf("Mono12"), &m] { (void)toGray8(image, m.out.data()); },
         [&m] { plain::upperEight(m.inWords(), pixels, m.out.data()); }},
        unpacked("Mono10p", 10),
        unpacked("Mono12p", 12),
        toRgb("YUV422_8", 2, [&m] { plain::yuvToRgb(m.in.data(), pixels, m.out.data()); })};
    const std::pair<const char *, PixelKind> orders[] = {{"GR", PixelKind::BayerGR},
                                                         {"RG", PixelKind::BayerRG},
                                                         {"GB", PixelKind::BayerGB},
                                                         {"BG", PixelKind::BayerBG}};
    for (const bool deep : {false, true})
        for (const auto &[order, kind] : orders)
            all.push_back(bayer(order, kind, deep));
    return all;
}

} // namespace

int main(int argc, char *argv[])
{
    for (const bool oneCore : {true, false})
        for (const Conversion &conversion : conversions())
            benchmark::RegisterBenchmark(
                (conversion.name + (oneCore ? ", 1 core" : ", all cores")).c_str(), run, conversion,
                oneCore)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(iterations);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

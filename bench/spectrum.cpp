// One analysis of the ring against a bare 4096-point real FFT measured in the same run.
#include <kiss_fftr.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "SpectrumAnalyzer.h"

using namespace quellton;

namespace {

// Median over batches of the time per call, in microseconds.
double measure(const std::function<void()>& work, int batches = 15, int perBatch = 200) {
    for (int i = 0; i < perBatch; ++i) work();  // warm up
    std::vector<double> times;
    for (int b = 0; b < batches; ++b) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < perBatch; ++i) work();
        const std::chrono::duration<double, std::micro> spent =
            std::chrono::steady_clock::now() - start;
        times.push_back(spent.count() / perBatch);
    }
    std::nth_element(times.begin(), times.begin() + batches / 2, times.end());
    return times[batches / 2];
}

}  // namespace

int main() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
    std::vector<float> signal(4096);
    for (float& s : signal) s = noise(random);

    struct Free {
        void operator()(kiss_fftr_state* s) const { kiss_fftr_free(s); }
    };
    std::unique_ptr<kiss_fftr_state, Free> fft(kiss_fftr_alloc(4096, 0, nullptr, nullptr));
    std::vector<kiss_fft_cpx> spectrum(2049);
    const double fftUs = measure([&] { kiss_fftr(fft.get(), signal.data(), spectrum.data()); });

    double now = 0;
    SpectrumAnalyzer analyzer(now);
    analyzer.setUp({48000, 1, true});
    const SampleBuffer buffer{1, 4096 * sizeof(float), signal.data()};
    analyzer.consume(std::span(&buffer, 1), now);
    volatile float sink = 0;
    const double analyzeUs = measure([&] {
        now += 0.01;
        if (auto a = analyzer.analyze(now)) sink = sink + a->frame.level;
    });

    std::printf("analyze: %.1f us per call\n", analyzeUs);
    std::printf("kissfft 4096 real FFT: %.1f us per call\n", fftUs);
    std::printf("ratio analyze / FFT: %.2f\n", analyzeUs / fftUs);
    return 0;
}

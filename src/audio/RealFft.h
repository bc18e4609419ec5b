#pragma once

#include <array>
#include <memory>
#include <span>

namespace quellton {

// A 4096-point forward real FFT scaled like vDSP's packed real transform:
// re/im[k] for k = 1…2047 hold 2·X[k]; re[0] holds 2·DC and im[0] holds 2·Nyquist.
// The silence threshold of the analysis is an absolute level, so this scaling matters.
class RealFft {
public:
    static constexpr int size = 4096;
    static constexpr int bins = size / 2;

    RealFft();
    ~RealFft();
    RealFft(const RealFft&) = delete;
    RealFft& operator=(const RealFft&) = delete;

    void forward(std::span<const float, size> input, std::span<float, bins> re,
                 std::span<float, bins> im);

private:
    struct Config;
    std::unique_ptr<Config> config_;
};

}  // namespace quellton

#include "RealFft.h"

#include <kiss_fftr.h>

#include <new>
#include <vector>

namespace quellton {

struct RealFft::Config {
    struct Free {
        void operator()(kiss_fftr_state* s) const { kiss_fftr_free(s); }
    };
    std::unique_ptr<kiss_fftr_state, Free> state{kiss_fftr_alloc(size, 0, nullptr, nullptr)};
    std::vector<kiss_fft_cpx> out = std::vector<kiss_fft_cpx>(bins + 1);
};

RealFft::RealFft() : config_(std::make_unique<Config>()) {
    if (!config_->state) throw std::bad_alloc();
}

RealFft::~RealFft() = default;

void RealFft::forward(std::span<const float, size> input, std::span<float, bins> re,
                      std::span<float, bins> im) {
    kiss_fft_cpx* out = config_->out.data();
    kiss_fftr(config_->state.get(), input.data(), out);
    re[0] = 2.0f * out[0].r;
    im[0] = 2.0f * out[bins].r;
    for (int k = 1; k < bins; ++k) {
        re[k] = 2.0f * out[k].r;
        im[k] = 2.0f * out[k].i;
    }
}

}  // namespace quellton

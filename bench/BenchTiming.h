#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace quellton::bench {

using Clock = std::chrono::steady_clock;

inline double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The middle one: robust against a round that the loaded machine slowed down.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace quellton::bench

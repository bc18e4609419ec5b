#pragma once

#include <cstdlib>
#include <string>

namespace quellton::bench {

// The number after `--name` on the command line, or the fallback.
inline double numberArgument(int argc, char** argv, const std::string& name, double fallback) {
    for (int i = 1; i + 1 < argc; ++i)
        if (argv[i] == name) return std::atof(argv[i + 1]);
    return fallback;
}

}  // namespace quellton::bench

#include <cstdint>

#include "AppModel.h"

namespace quellton {

std::string AppModel::stableHash(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325ULL;
    for (unsigned char byte : text) {
        hash ^= byte;
        hash *= 0x100000001b3ULL;
    }
    constexpr char digits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::string out;
    do {
        out.insert(out.begin(), digits[hash % 36]);
        hash /= 36;
    } while (hash != 0);
    return out;
}

}  // namespace quellton

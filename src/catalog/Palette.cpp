#include "Palette.h"

namespace quellton {

Color3 Palette::fromHex(std::uint32_t c) {
    return {float((c >> 16) & 0xFF) / 255.0f, float((c >> 8) & 0xFF) / 255.0f, float(c & 0xFF) / 255.0f};
}

const std::vector<Palette>& Palette::all() {
    static const std::vector<Palette> palettes = [] {
        struct Row {
            const char* name;
            std::uint32_t stops[4];
        };
        static constexpr Row rows[] = {
            {"Neonnacht", {0xFF2FD0, 0x7A3CFF, 0x1FD6FF, 0x2B5BFF}},
            {"Abendrot", {0xFF3D6E, 0xFF8A3D, 0xFFD36B, 0xB83CFF}},
            {"Polarlicht", {0x00FFA3, 0x00C2FF, 0x6B5BFF, 0x00FFD5}},
            {"Glut", {0xFF2A00, 0xFF7B00, 0xFFC400, 0xFF0044}},
            {"Tiefsee", {0x0047FF, 0x00B3FF, 0x6FF0FF, 0x1A3CC8}},
            {"Vaporwave", {0xFF71CE, 0x01CDFE, 0x05FFA1, 0xB967FF}},
            {"Gold", {0xF6C453, 0xFF9F1C, 0xFFF1C1, 0xC07A1A}},
            {"Gletscher", {0xE8F6FF, 0x8FD3FF, 0x4A7DFF, 0xC9B6FF}},
            {"Gift", {0xB6FF00, 0x00FF6A, 0xE1FF3C, 0x00D1A0}},
            {"Kirschblüte", {0xFFB7D5, 0xFF5FA2, 0xFFE3EF, 0xC86BFF}},
            {"Silber", {0xFFFFFF, 0x9AA4B2, 0xE6EBF2, 0x6D7685}},
            {"Regenbogen", {0xFF3B3B, 0xFFD23B, 0x3BFF8A, 0x3B8AFF}},
            {"Blutmond", {0xFF0033, 0x8A001C, 0xFF6A5C, 0xFF2A00}},
            {"Phosphor", {0x00FF41, 0x00A81C, 0xA8FFB0, 0x3BFF6E}},
        };
        std::vector<Palette> result;
        for (const Row& row : rows) {
            Palette p{int(result.size()), row.name, {}};
            for (int i = 0; i < 4; ++i) p.stops[i] = fromHex(row.stops[i]);
            result.push_back(std::move(p));
        }
        return result;
    }();
    return palettes;
}

}  // namespace quellton

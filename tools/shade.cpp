// quellton-shade: renders one visualization body from a file, for working on shaders without rebuilding.
#include <QImageWriter>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "Catalog.h"
#include "Cell24.h"
#include "ShaderLibrary.h"
#include "TestFrames.h"

using namespace quellton;

namespace {

int usage() {
    std::cerr << "usage: quellton-shade ID [--body FILE] [--size WxH] [--time T] [--frame silent|idle|loud|bass|treble]\n"
                 "                      [--palette N] [--mouse X,Y] [--times T1,T2,...] --out FILE.png\n"
                 "  Renders the catalog entry ID, with its body taken from FILE when given. With --times, one\n"
                 "  picture per time is written side by side into the output.\n";
    return 2;
}

std::vector<double> parseList(const std::string& text) {
    std::vector<double> values;
    std::stringstream in(text);
    for (std::string item; std::getline(in, item, ',');) values.push_back(std::stod(item));
    return values;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return usage();
    const Visualizer* entry = Catalog::byID(argv[1]);
    if (!entry) {
        std::cerr << "unknown id " << argv[1] << "\n";
        return 2;
    }
    Visualizer v = *entry;
    int width = 480, height = 270;
    std::vector<double> times = {6.3};
    std::string frameName = "idle", out;
    std::optional<Palette> palette;
    std::array<float, 2> mouse{0, 0};
    for (int i = 2; i + 1 < argc; i += 2) {
        const std::string flag = argv[i], value = argv[i + 1];
        if (flag == "--body") {
            std::ifstream file(value);
            std::stringstream text;
            text << file.rdbuf();
            v.code = (v.id == "24zeller" ? cell24Edges() : std::string()) + text.str();
        } else if (flag == "--size") {
            std::sscanf(value.c_str(), "%dx%d", &width, &height);
        } else if (flag == "--time" || flag == "--times") {
            times = parseList(value);
        } else if (flag == "--frame") {
            frameName = value;
        } else if (flag == "--palette") {
            palette = Palette::all().at(std::size_t(std::stoi(value)));
        } else if (flag == "--mouse") {
            const auto m = parseList(value);
            mouse = {float(m.at(0)), float(m.at(1))};
        } else if (flag == "--out") {
            out = value;
        } else {
            return usage();
        }
    }
    if (out.empty() || !namedTestFrame(frameName, 0)) return usage();

    ShaderLibrary& library = ShaderLibrary::shared();
    library.compile(v);
    if (const auto failures = library.failures(); failures.count(v.id)) {
        std::cerr << "FEHLER " << v.id << ":\n" << failures.at(v.id) << "\n";
        return 1;
    }
    QImage sheet(width * int(times.size()), height, QImage::Format_RGB32);
    for (std::size_t i = 0; i < times.size(); ++i) {
        const auto image = library.snapshot(v, {double(width), double(height)}, times[i], palette,
                                            namedTestFrame(frameName, times[i]), mouse);
        if (!image) return 1;
        for (int y = 0; y < height; ++y)
            std::copy_n(image->constScanLine(y), width * 4, sheet.scanLine(y) + std::size_t(i) * std::size_t(width) * 4);
    }
    QImageWriter(QString::fromStdString(out), "png").write(sheet);
    return 0;
}

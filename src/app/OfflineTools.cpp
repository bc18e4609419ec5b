#include "OfflineTools.h"

#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "Catalog.h"
#include "ShaderLibrary.h"
#include "SoftShadow.h"

namespace quellton::OfflineTools {

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string format(const char* pattern, auto... values) {
    char buffer[256];
    std::snprintf(buffer, sizeof buffer, pattern, values...);
    return buffer;
}

const Visualizer* find(std::span<const Visualizer> entries, std::string_view id) {
    const auto it = std::find_if(entries.begin(), entries.end(), [&](const Visualizer& v) { return v.id == id; });
    return it == entries.end() ? nullptr : &*it;
}

}  // namespace

void writePng(const QImage& image, const std::filesystem::path& path) {
    QImageWriter writer(QString::fromStdString(path.string()), "png");
    writer.write(image);
}

int snapshots(ShaderLibrary& library, std::span<const Visualizer> entries, const std::filesystem::path& folder,
              double time, std::ostream& out) {
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const auto started = std::chrono::steady_clock::now();
    library.compileBlocking(entries);
    out << format("Übersetzt in %.1f s", secondsSince(started)) << std::endl;

    const auto failures = library.failures();
    int failed = 0;
    for (const Visualizer& v : entries) {
        if (const auto it = failures.find(v.id); it != failures.end()) {
            ++failed;
            out << "FEHLER " << v.id << ":\n" << it->second << "\n" << std::endl;
            continue;
        }
        const auto begun = std::chrono::steady_clock::now();
        const auto image = library.snapshot(v, {960, 540}, time);
        if (!image) {
            ++failed;
            continue;
        }
        writePng(*image, folder / (v.id + ".png"));
        out << "ok " << v.id << " " << format("%.0f", secondsSince(begun) * 1000.0) << " ms" << std::endl;
    }
    out << (entries.size() - std::size_t(failed)) << "/" << entries.size() << " in Ordnung" << std::endl;
    return failed > 0 ? 1 : 0;
}

int snapshots(ShaderLibrary& library, const std::filesystem::path& folder, double time, std::ostream& out) {
    return snapshots(library, catalog(), folder, time, out);
}

int still(ShaderLibrary& library, std::span<const Visualizer> entries, const StillMode& mode) {
    library.compileBlocking(entries);
    const Visualizer* v = find(entries, mode.id);
    if (!v) return 1;
    std::optional<Palette> palette;
    if (mode.palette && *mode.palette >= 0 && std::size_t(*mode.palette) < Palette::all().size())
        palette = Palette::all()[std::size_t(*mode.palette)];
    const auto image = library.snapshot(*v, {mode.width, mode.height}, mode.time, palette);
    if (!image) return 1;
    writePng(*image, mode.output);
    return 0;
}

int still(ShaderLibrary& library, const StillMode& mode) { return still(library, catalog(), mode); }

QImage iconImage(const QImage& picture) {
    QImage canvas(1024, 1024, QImage::Format_ARGB32_Premultiplied);
    if (canvas.isNull()) return {};
    canvas.fill(Qt::transparent);
    // Drawn with y down; the plate is symmetric, so only the shadow's offset changes sign.
    const QRectF plate(100, 100, 824, 824);
    QPainterPath path;
    path.addRoundedRect(plate, 185, 185);

    drawSoftShadow(canvas, path, QPointF(0, 12), 28, QColor::fromRgbF(0, 0, 0, 0.35f));
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillPath(path, QColor::fromRgbF(0.04f, 0.04f, 0.04f, 1.0f));
    painter.save();
    painter.setClipPath(path);
    painter.drawImage(plate, picture);
    painter.restore();
    painter.strokePath(path, QPen(QColor::fromRgbF(1, 1, 1, 0.14f), 3));
    painter.end();
    return canvas;
}

int icon(ShaderLibrary& library, std::span<const Visualizer> entries, const std::filesystem::path& file) {
    library.compileBlocking(entries);
    const Visualizer* halo = find(entries, "halo");
    if (!halo) return 1;
    const auto picture = library.snapshot(*halo, {824, 824}, 3.1, Palette::all().front());
    if (!picture) return 1;
    const QImage image = iconImage(*picture);
    if (image.isNull()) return 1;
    writePng(image, file);
    return 0;
}

int icon(ShaderLibrary& library, const std::filesystem::path& file) { return icon(library, catalog(), file); }

int bench(ShaderLibrary& library, std::span<const Visualizer> entries, std::ostream& out) {
    library.compileBlocking(entries);
    for (const Visualizer& v : entries) {
        const double ms = library.benchmark(v, {1440, 932});
        out << format("%-15s %6.2f ms", v.id.c_str(), ms) << std::endl;
    }
    return 0;
}

int bench(ShaderLibrary& library, std::ostream& out) { return bench(library, catalog(), out); }

}  // namespace quellton::OfflineTools

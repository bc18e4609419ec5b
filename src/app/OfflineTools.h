#pragma once

#include <QImage>

#include <filesystem>
#include <ostream>
#include <span>

#include "CommandLine.h"

namespace quellton {

class ShaderLibrary;
struct Visualizer;

// The window-less modes that render visualizations; each returns the process's exit status.
// Every mode compiles and works on `entries`; the short forms use the whole catalog.
namespace OfflineTools {
int snapshots(ShaderLibrary& library, std::span<const Visualizer> entries, const std::filesystem::path& folder,
              double time, std::ostream& out);
int snapshots(ShaderLibrary& library, const std::filesystem::path& folder, double time, std::ostream& out);
int still(ShaderLibrary& library, std::span<const Visualizer> entries, const StillMode& mode);
int still(ShaderLibrary& library, const StillMode& mode);
int icon(ShaderLibrary& library, std::span<const Visualizer> entries, const std::filesystem::path& file);
int icon(ShaderLibrary& library, const std::filesystem::path& file);
int bench(ShaderLibrary& library, std::span<const Visualizer> entries, std::ostream& out);
int bench(ShaderLibrary& library, std::ostream& out);

// The application icon around a picture: plate with a soft shadow, the picture clipped to it, a light rim.
QImage iconImage(const QImage& picture);
// PNG at path; a destination that cannot be written is ignored.
void writePng(const QImage& image, const std::filesystem::path& path);
}  // namespace OfflineTools

}  // namespace quellton

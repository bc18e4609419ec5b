// quellton-iconset: scales the 1024 px application icon into the sizes of an icon theme,
// folder/NxN/apps/NAME.png, as the build installs them.
#include <QDir>
#include <QImage>

#include <cstdio>
#include <cstdlib>

namespace {

// The plate of the icon sits 100 px inside the 1024 px picture; small sizes keep a little of that
// margin only, so the figure on the plate does not shrink to a few pixels.
constexpr int largeSize = 1024;
constexpr int smallMargin = 16;
constexpr int smallestWithFullMargin = 48;

QImage scaledIcon(const QImage& icon, int size) {
    QImage source = icon;
    if (size < smallestWithFullMargin) {
        const int inset = 100 - smallMargin;
        source = icon.copy(inset, inset, largeSize - 2 * inset, largeSize - 2 * inset);
    }
    return source.scaled(size, size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: quellton-iconset ICON.png FOLDER NAME SIZE...\n");
        return 2;
    }
    const QImage icon = QImage(QString::fromLocal8Bit(argv[1])).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (icon.size() != QSize(largeSize, largeSize)) {
        std::fprintf(stderr, "quellton-iconset: %s is no %d × %d picture\n", argv[1], largeSize, largeSize);
        return 1;
    }
    const QString folder = QString::fromLocal8Bit(argv[2]), name = QString::fromLocal8Bit(argv[3]);
    for (int i = 4; i < argc; ++i) {
        const int size = std::atoi(argv[i]);
        if (size <= 0 || size > largeSize) {
            std::fprintf(stderr, "quellton-iconset: no icon size: %s\n", argv[i]);
            return 1;
        }
        const QString dir = QStringLiteral("%1/%2x%2/apps").arg(folder).arg(size);
        const QString file = dir + QLatin1Char('/') + name + QStringLiteral(".png");
        if (!QDir().mkpath(dir) || !scaledIcon(icon, size).convertToFormat(QImage::Format_ARGB32).save(file, "png")) {
            std::fprintf(stderr, "quellton-iconset: cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}

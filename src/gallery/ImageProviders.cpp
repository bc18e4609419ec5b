#include "ImageProviders.h"

#include <QFile>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

#include <cmath>
#include <vector>

#include "AppModel.h"
#include "SymbolNames.h"

namespace quellton {

namespace {

QImage tinted(QImage image, const QColor& colour) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

QImage blank(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// One pass of a running-sum box blur along rows (or columns) of the alpha channel.
void boxBlur(std::vector<float>& alpha, int width, int height, int radius, bool rows) {
    const int lines = rows ? height : width, length = rows ? width : height;
    std::vector<float> line(static_cast<std::size_t>(length));
    for (int l = 0; l < lines; ++l) {
        auto at = [&](int i) -> float& {
            return alpha[std::size_t(rows ? l * width + i : i * width + l)];
        };
        for (int i = 0; i < length; ++i) line[std::size_t(i)] = at(i);
        float sum = 0;
        for (int i = -radius; i <= radius; ++i) sum += line[std::size_t(std::clamp(i, 0, length - 1))];
        for (int i = 0; i < length; ++i) {
            at(i) = sum / float(2 * radius + 1);
            sum += line[std::size_t(std::min(i + radius + 1, length - 1))] - line[std::size_t(std::max(i - radius, 0))];
        }
    }
}

}  // namespace

namespace {

QString ownDrawing(const QString& name) { return QStringLiteral(":/quellton/gallery/symbols/%1.svg").arg(name); }

// "<symbol>.circle.fill" without a drawing of its own: a filled disc with the symbol cut out of it.
void drawCutOutOfDisc(QPainter& painter, const QString& inner, QSizeF size) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    const QRectF disc = QRectF(QPointF(0, 0), size).adjusted(size.width() / 24, size.height() / 24,
                                                             -size.width() / 24, -size.height() / 24);
    painter.drawEllipse(disc);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    const QSizeF cut = size * 0.58;
    QSvgRenderer(ownDrawing(inner)).render(&painter, QRectF(disc.center() - QPointF(cut.width(), cut.height()) / 2, cut));
}

}  // namespace

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString name = id.section('/', 0, 0);
    const QColor colour(QStringLiteral("#") + id.section('/', 1, 1));
    const QSize wanted = requestedSize.isValid() ? requestedSize : QSize(16, 16);
    QImage image = blank(wanted);
    QPainter painter(&image);
    const QStringList themed = symbolThemeNames(name);
    const auto found = std::find_if(themed.begin(), themed.end(), [](const QString& n) { return QIcon::hasThemeIcon(n); });
    const QString discSuffix = QStringLiteral(".circle.fill");
    if (found != themed.end()) {
        const QPixmap pixmap = QIcon::fromTheme(*found).pixmap(wanted);
        painter.drawPixmap(QRect(QPoint(0, 0), wanted).center() - pixmap.rect().center(), pixmap);
    } else if (name.endsWith(discSuffix) && !QFile::exists(ownDrawing(name))) {
        drawCutOutOfDisc(painter, name.chopped(discSuffix.size()), wanted);
    } else {
        QSvgRenderer(ownDrawing(name)).render(&painter, QRectF(QPointF(0, 0), wanted));
    }
    painter.end();
    if (size) *size = wanted;
    return tinted(image, colour.isValid() ? colour : QColor(Qt::black));
}

QImage ThumbnailProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto& thumbnails = model_.thumbnails();
    const auto it = thumbnails.find(id.section('/', 0, 0).toStdString());
    QImage image = it == thumbnails.end() ? QImage() : it->second;
    if (!image.isNull() && requestedSize.isValid())
        image = image.scaled(requestedSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (size) *size = image.size();
    return image;
}

QImage ShadowProvider::requestImage(const QString& id, QSize* size, const QSize&) {
    const int blur = std::clamp(id.section('/', 0, 0).toInt(), 1, 64);
    const double radius = std::clamp(id.section('/', 1, 1).toDouble(), 0.0, 64.0);
    const int corner = int(std::ceil(radius));
    const int side = 2 * (2 * blur + corner) + 1;
    const int w = side, h = side;
    // The shape fills all but the blur margin; three box passes come close to a Gaussian.
    QImage shape = blank({w, h});
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath path;
        path.addRoundedRect(QRectF(2 * blur, 2 * blur, w - 4 * blur, h - 4 * blur), radius, radius);
        painter.fillPath(path, Qt::black);
    }
    std::vector<float> alpha(std::size_t(w * h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) alpha[std::size_t(y * w + x)] = float(qAlpha(shape.pixel(x, y))) / 255.0f;
    const int pass = std::max(1, int(std::lround(blur / 3.0)));
    for (int i = 0; i < 3; ++i) {
        boxBlur(alpha, w, h, pass, true);
        boxBlur(alpha, w, h, pass, false);
    }
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) image.setPixel(x, y, qRgba(0, 0, 0, int(std::lround(alpha[std::size_t(y * w + x)] * 255))));
    if (size) *size = image.size();
    return image;
}

}  // namespace quellton

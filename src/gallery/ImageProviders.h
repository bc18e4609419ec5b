#pragma once

#include <QQuickImageProvider>

namespace quellton {

class AppModel;

// "image://symbol/<symbol name>/<rrggbb>": a monochrome icon of the named symbol in that colour, from
// the desktop's icon theme where it has one of the same meaning, else from our own drawings.
class SymbolProvider : public QQuickImageProvider {
public:
    SymbolProvider() : QQuickImageProvider(Image) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

// "image://thumbnail/<visualizer id>/<image key>": the model's still of that visualizer.
class ThumbnailProvider : public QQuickImageProvider {
public:
    explicit ThumbnailProvider(const AppModel& model) : QQuickImageProvider(Image), model_(model) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    const AppModel& model_;
};

// "image://shadow/<blur>/<corner radius>": a soft black rounded-rectangle shadow for a BorderImage,
// with `blur` pixels of fall-off around a 1-pixel stretchable middle.
class ShadowProvider : public QQuickImageProvider {
public:
    ShadowProvider() : QQuickImageProvider(Image) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace quellton

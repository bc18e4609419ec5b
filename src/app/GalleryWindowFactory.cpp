#include "GalleryWindowFactory.h"

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>

namespace quellton {

namespace {

// Stands in for the gallery until its views exist: a plain window with the gallery's title and sizes.
class PlaceholderGallery : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(QRect(QPoint(), size()), QColor(0x1c, 0x1c, 0x20));
    }
};

}  // namespace

std::unique_ptr<QWindow> makeGalleryWindow() {
    auto window = std::make_unique<PlaceholderGallery>();
    window->setTitle(QStringLiteral("Quellton"));
    window->setMinimumSize(QSize(960, 660));
    window->resize(1240, 860);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect frame(QPoint(), window->size());
        frame.moveCenter(screen->availableGeometry().center());
        window->setPosition(frame.topLeft());
    }
    return window;
}

}  // namespace quellton

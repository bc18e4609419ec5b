// The gallery window alone, with the application's model, render thread and thumbnails, for the GUI
// tests: no wallpaper, and no capture until asked, so the machine's time goes to what the tests look
// at. Lines on standard input stand for the rest of the program: "toggleMix <id>" (as the menu would),
// "set <property> <value>" (any model property, as the tray menu would), "next" (as the Mix timer
// would), "capture start|stop" (as the application's start and end do), "show" (as the tray would)
// and "quit".
#include <QApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <unistd.h>

#include <iostream>

#include "AppModel.h"
#include "AudioSpectrum.h"
#include "GalleryWindowFactory.h"
#include "RenderThread.h"
#include "ShaderLibrary.h"
#include "WindowSystemGl.h"

using namespace quellton;

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quellton"));
    QApplication::setQuitOnLastWindowClosed(false);
    std::string error;
    if (!useWindowSystemGl(&error)) {
        std::cerr << "no OpenGL: " << error << std::endl;
        return 1;
    }
    AppModel::shared().start();
    std::unique_ptr<QWindow> gallery = makeGalleryWindow();
    presentGalleryWindow(*gallery);

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        char buffer[512];
        const ssize_t n = read(STDIN_FILENO, buffer, sizeof buffer - 1);
        if (n <= 0) {
            input.setEnabled(false);
            return;
        }
        for (const QString& line : QString::fromUtf8(buffer, int(n)).split('\n', Qt::SkipEmptyParts)) {
            const QStringList words = line.split(' ', Qt::SkipEmptyParts);
            if (words.value(0) == "toggleMix" && words.size() == 2) AppModel::shared().toggleMix(words[1].toStdString());
            if (words.value(0) == "set" && words.size() == 3 &&
                !AppModel::shared().setProperty(words[1].toUtf8().constData(), words[2]))
                std::cerr << "no property " << words[1].toStdString() << std::endl;
            if (words.value(0) == "next") AppModel::shared().next();
            if (line == "capture start") AudioSpectrum::shared().start();
            if (line == "capture stop") AudioSpectrum::shared().stop();
            if (words.value(0) == "show") gallery->show();
            if (words.value(0) == "quit") QApplication::quit();
        }
    });

    const int status = app.exec();
    gallery.reset();
    AudioSpectrum::shared().stop();
    RenderThread::stopShared();
    ShaderLibrary::shared().stopBackgroundWork();
    return status;
}

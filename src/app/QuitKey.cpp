#include "QuitKey.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>

namespace quellton {

namespace {

class QuitKeyFilter : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->keyCombination() != quitKey)
            return false;
        QCoreApplication::quit();
        return true;
    }
};

}  // namespace

void quitOnKey(QWindow& window) { window.installEventFilter(new QuitKeyFilter(&window)); }

}  // namespace quellton

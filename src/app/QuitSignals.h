#pragma once

#include <QObject>

namespace quellton {

// Turns SIGTERM, SIGINT and SIGHUP into a normal quit of the event loop, so capture is torn down
// as after "Quellton beenden". A signal handler may only write to a pipe; the loop reads it.
class QuitSignals : public QObject {
    Q_OBJECT
public:
    explicit QuitSignals(QObject* parent = nullptr);
    ~QuitSignals() override;

signals:
    void quitRequested();

private:
    int fds_[2] = {-1, -1};
};

}  // namespace quellton

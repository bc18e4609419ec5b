#include "SessionIdle.h"

namespace quellton {

namespace {

const QString idleHint = QStringLiteral("IdleHint");

}  // namespace

SessionIdle::SessionIdle(SessionLockSources sources, QObject* parent) : QObject(parent), sources_(std::move(sources)) {}

void SessionIdle::start() {
    if (!sources_.logindBus.isConnected()) return;
    findLogindSession(sources_, this, [this](const QString& path) { watchSession(path); });
}

void SessionIdle::watchSession(const QString& path) {
    watchSessionProperties(sources_, path, this, SLOT(onSessionProperties(QString, QVariantMap, QStringList)));
    if (!sources_.logindService.isEmpty())
        readSessionFlag(sources_, path, idleHint, this, [this](bool idle) { update(idle); });
}

void SessionIdle::onSessionProperties(const QString& interface, const QVariantMap& changed, const QStringList&) {
    if (interface != QStringLiteral("org.freedesktop.login1.Session")) return;
    const auto hint = changed.find(idleHint);
    if (hint != changed.end()) update(hint->toBool());
}

void SessionIdle::update(bool idle) {
    if (idle == idle_) return;
    idle_ = idle;
    emit idleChanged(idle);
}

}  // namespace quellton

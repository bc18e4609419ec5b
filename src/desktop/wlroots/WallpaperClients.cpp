#include "WallpaperClients.h"

#include <signal.h>
#include <sys/socket.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <algorithm>
#include <utility>

#include "SettingsStore.h"

namespace quellton {

namespace {

QJsonObject toJson(const ClientProcess& p) {
    return {{"name", p.name},
            {"arguments", QJsonArray::fromStringList(p.arguments)},
            {"environment", QJsonArray::fromStringList(p.environment)},
            {"directory", p.directory}};
}

ClientProcess fromJson(const QJsonObject& o) {
    const auto strings = [](const QJsonValue& v) {
        QStringList list;
        for (const QJsonValue& item : v.toArray()) list.append(item.toString());
        return list;
    };
    ClientProcess p;
    p.name = o.value("name").toString();
    p.arguments = strings(o.value("arguments"));
    p.environment = strings(o.value("environment"));
    p.directory = o.value("directory").toString();
    return p;
}

}  // namespace

namespace wayland {

const QStringList WallpaperClients::names{QStringLiteral("swaybg"), QStringLiteral("hyprpaper"),
                                          QStringLiteral("swww-daemon"), QStringLiteral("wbg"),
                                          QStringLiteral("wpaperd")};

pid_t compositorProcess(int displayFd) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(displayFd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return 0;
    return peer.pid;
}

QString waylandSocketPath(const QStringList& environment) {
    QString display = environmentValue(environment, QStringLiteral("WAYLAND_DISPLAY"));
    if (display.isEmpty()) display = QStringLiteral("wayland-0");
    if (display.startsWith(u'/')) return QFileInfo(display).absoluteFilePath();
    const QString runtime = environmentValue(environment, QStringLiteral("XDG_RUNTIME_DIR"));
    if (runtime.isEmpty()) return {};
    return QFileInfo(runtime + u'/' + display).absoluteFilePath();
}

WallpaperClients::WallpaperClients(std::shared_ptr<SettingsStore> settings, pid_t compositor, QString socket)
    : settings_(std::move(settings)), compositor_(compositor), socket_(std::move(socket)) {}

// A client the compositor starts itself gets its connection handed over (WAYLAND_SOCKET) but
// still inherits the compositor's WAYLAND_DISPLAY; sway detaches it, so its parent is not sway.
bool WallpaperClients::ofOurCompositor(const ClientProcess& process) const {
    if (compositor_ > 0 && process.parent == compositor_) return true;
    return !socket_.isEmpty() && waylandSocketPath(process.environment) == socket_;
}

std::vector<ClientProcess> WallpaperClients::stopped() const {
    std::vector<ClientProcess> clients;
    for (const QJsonValue& v : QJsonDocument::fromJson(settings_->string(settingsKey).toUtf8()).array())
        if (const ClientProcess p = fromJson(v.toObject()); !p.arguments.isEmpty()) clients.push_back(p);
    return clients;
}

void WallpaperClients::remember(const std::vector<ClientProcess>& clients) {
    QJsonArray list;
    for (const ClientProcess& p : clients) list.append(toJson(p));
    if (list.isEmpty())
        settings_->remove(settingsKey);
    else
        settings_->set(settingsKey, QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact)));
}

QStringList WallpaperClients::stopRunning() {
    std::vector<ClientProcess> ours;
    for (ClientProcess& p : ownProcessesNamed(names))
        if (ofOurCompositor(p) && !p.arguments.isEmpty()) ours.push_back(std::move(p));
    if (ours.empty()) return {};
    // The same client started again by its compositor is given back once.
    std::vector<ClientProcess> all = stopped();
    for (const ClientProcess& p : ours)
        if (std::ranges::none_of(all, [&](const ClientProcess& q) { return q.arguments == p.arguments; })) all.push_back(p);
    remember(all);
    QStringList stoppedNames;
    for (const ClientProcess& p : ours) {
        kill(p.pid, SIGTERM);
        stoppedNames.append(p.name);
    }
    return stoppedNames;
}

void WallpaperClients::restart() {
    for (const ClientProcess& p : stopped()) {
        QProcess process;
        QProcessEnvironment environment;
        for (const QString& entry : p.environment) {
            const qsizetype equals = entry.indexOf(u'=');
            if (equals > 0) environment.insert(entry.left(equals), entry.mid(equals + 1));
        }
        // A connection handed over by the compositor is gone with the process: connect by name.
        environment.remove(QStringLiteral("WAYLAND_SOCKET"));
        if (!environment.contains(QStringLiteral("WAYLAND_DISPLAY")) && !socket_.isEmpty())
            environment.insert(QStringLiteral("WAYLAND_DISPLAY"), socket_);
        process.setProcessEnvironment(environment);
        process.setProgram(p.arguments.front());
        process.setArguments(p.arguments.mid(1));
        if (QDir(p.directory).exists()) process.setWorkingDirectory(p.directory);
        if (!process.startDetached())
            qWarning("Quellton: %s lässt sich nicht wieder starten: %s", qUtf8Printable(p.name),
                     qUtf8Printable(process.errorString()));
    }
    remember({});
}

}  // namespace wayland
}  // namespace quellton

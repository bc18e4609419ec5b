#include "PlasmaDesktop.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QDateTime>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <limits>

#include "PipeWireConnection.h"
#include "PlasmaScripts.h"
#include "SavedWallpapers.h"
#include "SettingsStore.h"
#include "StreamSurface.h"

namespace quellton::plasma {

namespace {

const QString shellService = QStringLiteral("org.kde.plasmashell");
const QString shellPath = QStringLiteral("/PlasmaShell");
const QString shellInterface = QStringLiteral("org.kde.PlasmaShell");
const QString pluginId = QStringLiteral(QUELLTON_PLASMA_WALLPAPER_ID);
const QString pressPath = QStringLiteral("/io/github/quellton/Quellton/Wallpaper");
constexpr int scriptTimeoutMs = 5000;
constexpr int reconnectMs = 1000;
constexpr int retryMs = 2000;
constexpr int leftButton = 1;

QString stillPath(const QString& screen) {
    QString safe = screen;
    safe.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9_-]")), QStringLiteral("_"));
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Quellton/Hintergrund/plasma-%1.jpg").arg(safe);
}

}  // namespace

// The wallpaper plugin's way in: Press on the session bus, one call per press.
class PressAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.github.quellton.Quellton.Wallpaper")
public:
    PressAdaptor(QObject* owner, PlasmaDesktop* desktop) : QDBusAbstractAdaptor(owner), desktop_(desktop) {}

public slots:
    // Numbers come from JavaScript, so all are doubles.
    void Press(double node, double x, double y, double buttons) {
        if (node > 0) desktop_->press(std::uint32_t(node), {x, y}, int(buttons));
    }

private:
    PlasmaDesktop* desktop_;
};

PlasmaDesktop::PlasmaDesktop(std::shared_ptr<SettingsStore> settings, QDBusConnection bus, QObject* parent)
    : DesktopHost(parent), settings_(std::move(settings)), saved_(std::make_unique<SavedWallpapers>(settings_)),
      bus_(std::move(bus)) {
    reconnect_.setSingleShot(true);
    reconnect_.setInterval(reconnectMs);
    connect(&reconnect_, &QTimer::timeout, this, &PlasmaDesktop::connectPipeWire);
}

PlasmaDesktop::~PlasmaDesktop() { bus_.unregisterObject(pressPath); }

QString PlasmaDesktop::name() const { return QStringLiteral("KDE Plasma: Hintergrund-Erweiterung mit PipeWire-Bild"); }

void PlasmaDesktop::start() {
    auto* object = new QObject(this);
    new PressAdaptor(object, this);
    bus_.registerObject(pressPath, object, QDBusConnection::ExportAdaptors);
    // Before anything of ours (or the desktop-picture sync) changes a desktop.
    saveUserWallpapers();
    connectPipeWire();
}

// A server that goes away takes every stream with it; the next one gets new streams and the
// plugin their new nodes.
void PlasmaDesktop::connectPipeWire() {
    const QPointer<PlasmaDesktop> self(this);
    pipewire_ = PipeWireConnection::connect([self] {
        QMetaObject::invokeMethod(self, [self] {
            if (!self) return;
            for (StreamSurface* surface : self->surfaces_)
                if (surface) surface->reconnect(nullptr);
            self->pipewire_.reset();
            self->reconnect_.start();
        }, Qt::QueuedConnection);
    });
    if (!pipewire_) {
        qWarning("Quellton: PipeWire antwortet nicht; neuer Versuch.");
        reconnect_.start();
        return;
    }
    for (StreamSurface* surface : surfaces_)
        if (surface) surface->reconnect(pipewire_);
}

std::unique_ptr<WallpaperSurface> PlasmaDesktop::makeSurface(const DesktopScreen& screen) {
    const QPointer<PlasmaDesktop> self(this);
    auto surface = std::make_unique<StreamSurface>(screen, pipewire_, stillPath(screen.name), [self](StreamSurface& s) {
        if (self) self->place(s);
    });
    std::erase_if(surfaces_, [](const QPointer<StreamSurface>& s) { return s.isNull(); });
    surfaces_.emplace_back(surface.get());
    return surface;
}

void PlasmaDesktop::saveUserWallpapers() {
    if (saved_->saved()) return;  // a crash left them there: those are still the user's
    QString answer;
    if (evaluate(savedWallpapersScript(), &answer)) saved_->keepFirst(answer.trimmed().toUtf8(), pluginId);
}

// plasmashell may not be there yet (a start at login) or have no desktop on that screen yet: then
// again a little later, for as long as the surface lives.
void PlasmaDesktop::place(StreamSurface& surface) {
    if (surface.node() == 0 || stopped_) return;
    const auto later = [this, &surface] {
        QTimer::singleShot(retryMs, &surface, [this, &surface] { place(surface); });
    };
    saveUserWallpapers();
    if (!saved_->saved()) {
        if (!warned_) qWarning("Quellton: Plasmas Hintergründe ließen sich noch nicht sichern; neuer Versuch.");
        warned_ = true;
        later();
        return;
    }
    const auto all = screens();
    const auto at = std::ranges::find_if(all, [&](const DesktopScreen& s) { return s.geometry == surface.geometry(); });
    StreamPlacement placement;
    placement.screen = surface.geometry();
    placement.index = at == all.end() ? 0 : int(at - all.begin());
    placement.node = surface.node();
    // Plasma keeps it as a 32-bit Int; it differs from every earlier one, also an earlier run's.
    placement.generation =
        (QDateTime::currentSecsSinceEpoch() * 16 + (++generation_ % 16)) % std::numeric_limits<int>::max();
    placement.stillUrl = QUrl::fromLocalFile(stillPath(surface.screen().name)).toString(QUrl::FullyEncoded);
    QString placed;
    if (!evaluate(selectScript(pluginId, placement), &placed) || placed.trimmed().toInt() == 0) later();
}

void PlasmaDesktop::stop() {
    stopped_ = true;
    if (const auto saved = saved_->saved()) {
        if (evaluate(restoreScript(*saved))) saved_->forget();
    }
}

void PlasmaDesktop::press(std::uint32_t node, QPointF local, int buttons) {
    if (!(buttons & leftButton)) return;
    for (StreamSurface* surface : surfaces_)
        if (surface && surface->node() == node) emit leftClick(QPointF(surface->geometry().topLeft()) + local);
}

bool PlasmaDesktop::evaluate(const QString& script, QString* answer) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(shellService, shellPath, shellInterface, QStringLiteral("evaluateScript"));
    call.setArguments({script});
    const QDBusMessage reply = bus_.call(call, QDBus::Block, scriptTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        // Not running (yet) is what the retries are for.
        if (reply.errorName() != QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"))
            qWarning("Quellton: plasmashell lehnt ein Skript ab: %s", qUtf8Printable(reply.errorMessage()));
        return false;
    }
    if (answer && !reply.arguments().isEmpty()) *answer = reply.arguments().constFirst().toString();
    return true;
}

}  // namespace quellton::plasma

#include "PlasmaDesktop.moc"

// A stand-in for plasmashell's script interface on a private session bus, for the tests of the
// Plasma adapter where no Plasma can run. It is not Plasma: it runs the scripts it receives in a
// QJSEngine (as plasmashell does) against a small model of Plasma's scripting API: desktops()
// with screen, wallpaperPlugin, currentConfigGroup, readConfig and writeConfig; desktopForScreen,
// screenGeometry and print. Its state is the JSON given as the only argument and can be read back
// through org.quellton.PlasmaStandIn.State.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QJSEngine>
#include <QObject>

#include <iostream>

namespace {

const char* const api = R"(
var __out = [];
function print(text) { __out.push(String(text)); }
function screenGeometry(i) {
    var g = __state.screens[i];
    return g ? { x: g.x, y: g.y, width: g.width, height: g.height } : undefined;
}
function __desktop(d) {
    return {
        get screen() { return d.screen; },
        get wallpaperPlugin() { return d.wallpaperPlugin; },
        set wallpaperPlugin(name) { d.wallpaperPlugin = name; },
        currentConfigGroup: [],
        writeConfig: function (key, value) {
            var group = this.currentConfigGroup.join('/');
            if (!d.config[group]) d.config[group] = {};
            d.config[group][key] = value;
        },
        readConfig: function (key) {
            var group = this.currentConfigGroup.join('/');
            return d.config[group] ? d.config[group][key] : undefined;
        }
    };
}
function desktops() { return __state.desktops.map(__desktop); }
function desktopForScreen(i) {
    for (var k = 0; k < __state.desktops.length; ++k)
        if (__state.desktops[k].screen == i) return __desktop(__state.desktops[k]);
    return null;
}
)";

class Shell : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.PlasmaShell")
public:
    explicit Shell(QString state) : state_(std::move(state)) {}
    const QString& state() const { return state_; }

public slots:
    QString evaluateScript(const QString& script) {
        QJSEngine engine;
        engine.evaluate(QStringLiteral("var __state = ") + state_ + u';');
        engine.evaluate(QString::fromUtf8(api));
        const QJSValue result = engine.evaluate(script);
        if (result.isError()) {
            sendErrorReply(QDBusError::Failed, result.toString());
            return {};
        }
        state_ = engine.evaluate(QStringLiteral("JSON.stringify(__state)")).toString();
        return engine.evaluate(QStringLiteral("__out.join('\\n')")).toString();
    }

private:
    QString state_;
};

class StandIn : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quellton.PlasmaStandIn")
public:
    explicit StandIn(const Shell& shell) : shell_(shell) {}

public slots:
    QString State() const { return shell_.state(); }

private:
    const Shell& shell_;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: plasma_shell_standin STATE-JSON" << std::endl;
        return 2;
    }
    Shell shell(QString::fromUtf8(argv[1]));
    StandIn standIn(shell);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(QStringLiteral("/PlasmaShell"), &shell, QDBusConnection::ExportAllSlots) ||
        !bus.registerObject(QStringLiteral("/StandIn"), &standIn, QDBusConnection::ExportAllSlots) ||
        !bus.registerService(QStringLiteral("org.kde.plasmashell")))
        return 1;
    return app.exec();
}

#include "PlasmaShellStandIn.moc"

#pragma once

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace quellton {

// One running instance per session: the first start owns the application's name on the session
// bus and answers org.freedesktop.Application; a later start asks it to show itself.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(QObject* parent = nullptr);

    // True when this process is now the one instance, or when there is no session bus to ask.
    bool claim();
    // Whether another process is the instance now.
    static bool running();
    // Asks the running instance to come forward; false when no instance answered.
    static bool activateRunning();

signals:
    void activated();
};

// org.freedesktop.Application on the instance's object.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    explicit ApplicationAdaptor(SingleInstance* instance);

public slots:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameters, const QVariantMap& platformData);

private:
    SingleInstance* instance_;
};

}  // namespace quellton

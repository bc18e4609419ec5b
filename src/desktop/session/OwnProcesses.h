#pragma once

#include <sys/types.h>

#include <QString>
#include <QStringList>

#include <vector>

namespace quellton {

// A process of this user as /proc shows it.
struct ClientProcess {
    pid_t pid = 0;
    pid_t parent = 0;
    QString name;  // the kernel's short name (comm)
    QStringList arguments;
    QStringList environment;  // NAME=value
    QString directory;
};

// The processes of this user whose short name is one of `names`.
std::vector<ClientProcess> ownProcessesNamed(const QStringList& names);
// The value of one variable in a process's environment; empty when unset.
QString environmentValue(const QStringList& environment, const QString& name);

}  // namespace quellton

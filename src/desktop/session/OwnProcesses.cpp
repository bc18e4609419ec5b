#include "OwnProcesses.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace quellton {

namespace {

QStringList nulSeparated(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    QStringList parts;
    for (const QByteArray& part : file.readAll().split('\0'))
        if (!part.isEmpty()) parts.append(QString::fromLocal8Bit(part));
    return parts;
}

// The fourth field of /proc/<pid>/stat, after the name in parentheses (which may hold spaces).
pid_t parentOf(const QString& procDir) {
    QFile file(procDir + QStringLiteral("/stat"));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    const QByteArray stat = file.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 1 ? pid_t(fields[1].toInt()) : 0;
}

}  // namespace

QString environmentValue(const QStringList& environment, const QString& name) {
    for (const QString& entry : environment)
        if (entry.startsWith(name + u'=')) return entry.mid(name.size() + 1);
    return {};
}

std::vector<ClientProcess> ownProcessesNamed(const QStringList& names) {
    std::vector<ClientProcess> found;
    const QDir proc(QStringLiteral("/proc"));
    for (const QString& entry : proc.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isPid = false;
        const pid_t pid = pid_t(entry.toInt(&isPid));
        if (!isPid) continue;
        const QString dir = proc.filePath(entry);
        struct stat info {};
        if (stat(QFile::encodeName(dir).constData(), &info) != 0 || info.st_uid != getuid()) continue;
        QFile comm(dir + QStringLiteral("/comm"));
        if (!comm.open(QIODevice::ReadOnly)) continue;
        const QString name = QString::fromLocal8Bit(comm.readAll()).trimmed();
        if (!names.contains(name)) continue;
        found.push_back({pid, parentOf(dir), name, nulSeparated(dir + QStringLiteral("/cmdline")),
                         nulSeparated(dir + QStringLiteral("/environ")),
                         QFileInfo(dir + QStringLiteral("/cwd")).symLinkTarget()});
    }
    return found;
}

}  // namespace quellton

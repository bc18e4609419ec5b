#include "NemoDesktopHandlers.h"

#include <algorithm>
#include <ranges>
#include <string>

#include "BackdropVault.h"
#include "GSettingsClient.h"
#include "OwnProcesses.h"

namespace quellton {

namespace {

const QString schema = QStringLiteral("org.nemo.desktop");
const QString key = QStringLiteral("ignored-desktop-handlers");
// Set while the entry in nemo's list is ours to take out again.
const QString ownsEntry = QStringLiteral("nemoIgnoresUs");
// Set when the list was the schema's default before: taking our entry out resets it.
const QString listWasDefault = QStringLiteral("nemoListWasDefault");

}  // namespace

bool nemoMayManageDesktop(std::string_view currentDesktop, bool nemoDesktopRunning) {
    if (nemoDesktopRunning) return true;
    for (const auto entry : std::views::split(currentDesktop, ':')) {
        const std::string_view name(entry.begin(), entry.end());
        if (name == "X-Cinnamon" || name == "Cinnamon") return true;
    }
    return false;
}

// Ours only: this user's nemo-desktop on this display, not one of another session.
bool nemoDesktopRunning() {
    const QString display = qEnvironmentVariable("DISPLAY");
    return std::ranges::any_of(ownProcessesNamed({QStringLiteral("nemo-desktop")}), [&](const ClientProcess& p) {
        return environmentValue(p.environment, QStringLiteral("DISPLAY")) == display;
    });
}

NemoDesktopHandlers::NemoDesktopHandlers(BackdropVault& vault, QString windowClass)
    : vault_(vault), windowClass_(std::move(windowClass)) {}

void NemoDesktopHandlers::claim() {
    std::optional<GSettingsClient> settings = GSettingsClient::open(schema);
    if (!settings) return;  // nemo is not installed
    QStringList handlers = settings->getStrv(key).value_or(QStringList());
    if (handlers.contains(windowClass_)) return;
    handlers.append(windowClass_);
    const bool wasDefault = !settings->hasUserValue(key);
    if (!settings->setStrv(key, handlers)) return;
    GSettingsClient::sync();
    vault_.setFlag(listWasDefault, wasDefault);
    vault_.setFlag(ownsEntry, true);
    qInfo("Quellton: »%s« steht jetzt in org.nemo.desktop ignored-desktop-handlers, damit nemo-desktop die "
          "Schreibtischsymbole neben dem Hintergrundbild weiter zeigt.",
          qPrintable(windowClass_));
}

void NemoDesktopHandlers::release() {
    if (!vault_.flag(ownsEntry)) return;
    std::optional<GSettingsClient> settings = GSettingsClient::open(schema);
    if (settings) {
        QStringList handlers = settings->getStrv(key).value_or(QStringList());
        handlers.removeAll(windowClass_);
        // A list that followed the schema's default follows it again, unless it was changed meanwhile.
        if (!vault_.flag(listWasDefault) || !settings->reset(key) || settings->getStrv(key) != handlers)
            settings->setStrv(key, handlers);
        GSettingsClient::sync();
    }
    vault_.setFlag(listWasDefault, false);
    vault_.setFlag(ownsEntry, false);
}

}  // namespace quellton

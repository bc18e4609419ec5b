#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace quellton {

// One GSettings schema through GIO, on whatever back end the session uses (dconf on a desktop,
// GSETTINGS_BACKEND=keyfile or memory in tests). GIO aborts the process on an unknown schema
// or key and on a value of the wrong type; this client answers those with "nothing" or false.
// Main thread, or any one thread at a time.
class GSettingsClient {
public:
    // Nothing when the schema is not installed.
    static std::optional<GSettingsClient> open(const QString& schemaId);
    static bool schemaExists(const QString& schemaId);
    // Writes every pending change through to the back end, before the process ends for instance.
    static void sync();

    GSettingsClient(GSettingsClient&&) noexcept;
    GSettingsClient& operator=(GSettingsClient&&) noexcept;
    ~GSettingsClient();

    const QString& schemaId() const { return schemaId_; }
    bool hasKey(const QString& key) const;

    // Nothing for an unknown key or a key of another type. Enumeration keys read as strings (their nick).
    std::optional<QString> getString(const QString& key) const;
    std::optional<QStringList> getStrv(const QString& key) const;
    std::optional<int> getInt(const QString& key) const;
    std::optional<unsigned> getUInt(const QString& key) const;
    std::optional<bool> getBool(const QString& key) const;
    std::optional<double> getDouble(const QString& key) const;

    // False for an unknown key, another type, a value outside the key's range or choices, or a
    // key the administrator locked.
    bool setString(const QString& key, const QString& value);
    bool setStrv(const QString& key, const QStringList& value);
    bool setInt(const QString& key, int value);
    bool setUInt(const QString& key, unsigned value);
    bool setBool(const QString& key, bool value);
    bool setDouble(const QString& key, double value);
    // Back to the schema's default.
    bool reset(const QString& key);
    // The user (not the schema's default) gave the key its value, so a reset would change it.
    bool hasUserValue(const QString& key) const;

private:
    struct Handle;
    GSettingsClient(QString schemaId, std::unique_ptr<Handle> handle);

    QString schemaId_;
    std::unique_ptr<Handle> handle_;
};

}  // namespace quellton

// GIO's headers use the word "signals", which Qt defines as a macro: they come first.
#include <gio/gio.h>

#include "GSettingsClient.h"

#include <QByteArray>

#include <utility>
#include <vector>

namespace quellton {

namespace {

struct VariantUnref {
    void operator()(GVariant* v) const { g_variant_unref(v); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

struct KeyUnref {
    void operator()(GSettingsSchemaKey* k) const { g_settings_schema_key_unref(k); }
};
using SchemaKey = std::unique_ptr<GSettingsSchemaKey, KeyUnref>;

GSettingsSchema* lookUp(const QString& schemaId) {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    if (!source) return nullptr;  // no schemas installed at all
    return g_settings_schema_source_lookup(source, schemaId.toUtf8().constData(), TRUE);
}

}  // namespace

struct GSettingsClient::Handle {
    GSettings* settings = nullptr;
    GSettingsSchema* schema = nullptr;

    ~Handle() {
        if (settings) g_object_unref(settings);
        if (schema) g_settings_schema_unref(schema);
    }

    // The key if the schema has it and it holds values of `type`.
    SchemaKey key(const QString& name, const GVariantType* type) const {
        const QByteArray utf8 = name.toUtf8();
        if (!g_settings_schema_has_key(schema, utf8.constData())) return nullptr;
        SchemaKey key(g_settings_schema_get_key(schema, utf8.constData()));
        if (!g_variant_type_equal(g_settings_schema_key_get_value_type(key.get()), type)) return nullptr;
        return key;
    }

    Variant read(const QString& name, const GVariantType* type) const {
        if (!key(name, type)) return nullptr;
        return Variant(g_settings_get_value(settings, name.toUtf8().constData()));
    }

    bool write(const QString& name, GVariant* floating) {
        Variant value(g_variant_ref_sink(floating));
        const SchemaKey k = key(name, g_variant_get_type(value.get()));
        const QByteArray utf8 = name.toUtf8();
        if (!k || !g_settings_schema_key_range_check(k.get(), value.get()) ||
            !g_settings_is_writable(settings, utf8.constData()))
            return false;
        return g_settings_set_value(settings, utf8.constData(), value.get());
    }
};

GSettingsClient::GSettingsClient(QString schemaId, std::unique_ptr<Handle> handle)
    : schemaId_(std::move(schemaId)), handle_(std::move(handle)) {}
GSettingsClient::GSettingsClient(GSettingsClient&&) noexcept = default;
GSettingsClient& GSettingsClient::operator=(GSettingsClient&&) noexcept = default;
GSettingsClient::~GSettingsClient() = default;

bool GSettingsClient::schemaExists(const QString& schemaId) {
    GSettingsSchema* schema = lookUp(schemaId);
    if (!schema) return false;
    g_settings_schema_unref(schema);
    return true;
}

std::optional<GSettingsClient> GSettingsClient::open(const QString& schemaId) {
    auto handle = std::make_unique<Handle>();
    handle->schema = lookUp(schemaId);
    // A relocatable schema has no path of its own; GIO aborts when it is opened without one.
    if (!handle->schema || !g_settings_schema_get_path(handle->schema)) return std::nullopt;
    handle->settings = g_settings_new_full(handle->schema, nullptr, nullptr);
    if (!handle->settings) return std::nullopt;
    return GSettingsClient(schemaId, std::move(handle));
}

void GSettingsClient::sync() { g_settings_sync(); }

bool GSettingsClient::hasKey(const QString& key) const {
    return g_settings_schema_has_key(handle_->schema, key.toUtf8().constData());
}

namespace {

template <typename T, typename Extract>
std::optional<T> typed(const Variant& value, Extract extract) {
    if (!value) return std::nullopt;
    return T(extract(value.get()));
}

QString utf8String(GVariant* value) { return QString::fromUtf8(g_variant_get_string(value, nullptr)); }

QStringList utf8Strings(GVariant* value) {
    QStringList list;
    gsize count = 0;
    const gchar** strings = g_variant_get_strv(value, &count);
    for (gsize i = 0; i < count; ++i) list.append(QString::fromUtf8(strings[i]));
    g_free(strings);
    return list;
}

}  // namespace

std::optional<QString> GSettingsClient::getString(const QString& key) const {
    return typed<QString>(handle_->read(key, G_VARIANT_TYPE_STRING), utf8String);
}

std::optional<QStringList> GSettingsClient::getStrv(const QString& key) const {
    return typed<QStringList>(handle_->read(key, G_VARIANT_TYPE_STRING_ARRAY), utf8Strings);
}

std::optional<int> GSettingsClient::getInt(const QString& key) const {
    return typed<int>(handle_->read(key, G_VARIANT_TYPE_INT32), g_variant_get_int32);
}

std::optional<unsigned> GSettingsClient::getUInt(const QString& key) const {
    return typed<unsigned>(handle_->read(key, G_VARIANT_TYPE_UINT32), g_variant_get_uint32);
}

std::optional<bool> GSettingsClient::getBool(const QString& key) const {
    return typed<bool>(handle_->read(key, G_VARIANT_TYPE_BOOLEAN), g_variant_get_boolean);
}

std::optional<double> GSettingsClient::getDouble(const QString& key) const {
    return typed<double>(handle_->read(key, G_VARIANT_TYPE_DOUBLE), g_variant_get_double);
}

bool GSettingsClient::setString(const QString& key, const QString& value) {
    return handle_->write(key, g_variant_new_string(value.toUtf8().constData()));
}

bool GSettingsClient::setStrv(const QString& key, const QStringList& value) {
    std::vector<QByteArray> utf8;
    std::vector<const gchar*> strings;
    for (const QString& s : value) utf8.push_back(s.toUtf8());
    for (const QByteArray& s : utf8) strings.push_back(s.constData());
    return handle_->write(key, g_variant_new_strv(strings.data(), gssize(strings.size())));
}

bool GSettingsClient::setInt(const QString& key, int value) { return handle_->write(key, g_variant_new_int32(value)); }

bool GSettingsClient::setUInt(const QString& key, unsigned value) {
    return handle_->write(key, g_variant_new_uint32(value));
}

bool GSettingsClient::setBool(const QString& key, bool value) {
    return handle_->write(key, g_variant_new_boolean(value));
}

bool GSettingsClient::setDouble(const QString& key, double value) {
    return handle_->write(key, g_variant_new_double(value));
}

bool GSettingsClient::hasUserValue(const QString& key) const {
    if (!hasKey(key)) return false;
    return Variant(g_settings_get_user_value(handle_->settings, key.toUtf8().constData())) != nullptr;
}

bool GSettingsClient::reset(const QString& key) {
    const QByteArray utf8 = key.toUtf8();
    if (!hasKey(key) || !g_settings_is_writable(handle_->settings, utf8.constData())) return false;
    g_settings_reset(handle_->settings, utf8.constData());
    return true;
}

}  // namespace quellton

// GLib's headers name struct members "signals", which Qt defines as a macro: they come first.
#include <gio/gio.h>

#include "GnomeAppearance.h"

#include <memory>
#include <string>

namespace quellton {

namespace {

constexpr const char* schemaId = "org.gnome.desktop.interface";

std::string text(GSettings* settings, const char* key) {
    const std::unique_ptr<gchar, decltype(&g_free)> value(g_settings_get_string(settings, key), g_free);
    return value ? std::string(value.get()) : std::string();
}

}  // namespace

GnomeAppearance::GnomeAppearance(QObject* parent) : AppearanceSource(parent) {
    GSettingsSchemaSource* schemas = g_settings_schema_source_get_default();
    GSettingsSchema* schema = schemas ? g_settings_schema_source_lookup(schemas, schemaId, TRUE) : nullptr;
    if (!schema) return;
    hasColorScheme_ = g_settings_schema_has_key(schema, "color-scheme");
    hasAnimations_ = g_settings_schema_has_key(schema, "enable-animations");
    GSettings* settings = g_settings_new_full(schema, nullptr, nullptr);
    g_settings_schema_unref(schema);
    settings_ = settings;
    g_signal_connect(settings, "changed", G_CALLBACK(+[](GSettings*, gchar*, gpointer self) {
                         static_cast<GnomeAppearance*>(self)->notify();
                     }),
                     this);
}

GnomeAppearance::~GnomeAppearance() {
    if (!settings_) return;
    g_signal_handlers_disconnect_by_data(settings_, this);
    g_object_unref(settings_);
}

AppearanceHints GnomeAppearance::hints() const {
    if (!settings_) return {};
    auto* settings = static_cast<GSettings*>(settings_);
    AppearanceHints hints;
    hints.dark = darkFromGnome(hasColorScheme_ ? text(settings, "color-scheme") : std::string(),
                               text(settings, "gtk-theme"));
    if (hasAnimations_) hints.reduceMotion = !g_settings_get_boolean(settings, "enable-animations");
    return hints;
}

}  // namespace quellton

// SPDX-License-Identifier: MIT
#include "platform/keysettings/GSettingsKeySettings.h"

#include "platform/desktop/GObjectRef.h"
#include "platform/keysettings/GtkAccelerator.h"

#include <QLoggingCategory>

#include <gio/gio.h>

#include <memory>
#include <utility>

Q_LOGGING_CATEGORY(lcKeySettings, "tessaline.keysettings", QtWarningMsg)

namespace Tessaline {
namespace {

using Action = DesktopKeySettings::Action;
using Family = GSettingsKeySettings::Family;

struct SettingsKey
{
    const char* schema;
    const char* key;
};

constexpr const char* kGnomeMediaKeys = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char* kGnomeShell = "org.gnome.shell.keybindings";
constexpr const char* kCinnamonMediaKeys = "org.cinnamon.desktop.keybindings.media-keys";
constexpr const char* kMateMediaKeys = "org.mate.SettingsDaemon.plugins.media-keys";
constexpr const char* kMateWindowManager = "org.mate.Marco.global-keybindings";

const char* mainSchema(Family family)
{
    switch (family) {
    case Family::Gnome:
        return kGnomeMediaKeys;
    case Family::Cinnamon:
        return kCinnamonMediaKeys;
    case Family::Mate:
        return kMateMediaKeys;
    }
    return kGnomeMediaKeys;
}

// Where each family keeps the binding of an action, the user's own key before the fixed one.
QList<SettingsKey> settingsKeys(Family family, Action action)
{
    switch (family) {
    case Family::Gnome:
        switch (action) {
        case Action::VolumeUpPrecise:
            return {{kGnomeMediaKeys, "volume-up-precise"},
                    {kGnomeMediaKeys, "volume-up-precise-static"}};
        case Action::VolumeDownPrecise:
            return {{kGnomeMediaKeys, "volume-down-precise"},
                    {kGnomeMediaKeys, "volume-down-precise-static"}};
        case Action::BrightnessUpPrecise:
        case Action::BrightnessDownPrecise:
            return {};
        case Action::ScreenshotRegion:
            return {{kGnomeShell, "show-screenshot-ui"}};
        case Action::ScreenshotWindow:
            return {{kGnomeShell, "screenshot-window"}};
        case Action::MediaPlay:
            return {{kGnomeMediaKeys, "play"}, {kGnomeMediaKeys, "play-static"}};
        case Action::MediaNext:
            return {{kGnomeMediaKeys, "next"}, {kGnomeMediaKeys, "next-static"}};
        case Action::MediaPrevious:
            return {{kGnomeMediaKeys, "previous"}, {kGnomeMediaKeys, "previous-static"}};
        }
        break;
    case Family::Cinnamon:
        switch (action) {
        case Action::ScreenshotRegion:
            return {{kCinnamonMediaKeys, "area-screenshot"}};
        case Action::ScreenshotWindow:
            return {{kCinnamonMediaKeys, "window-screenshot"}};
        case Action::MediaPlay:
            return {{kCinnamonMediaKeys, "play"}};
        case Action::MediaNext:
            return {{kCinnamonMediaKeys, "next"}};
        case Action::MediaPrevious:
            return {{kCinnamonMediaKeys, "previous"}};
        default:
            return {};
        }
    case Family::Mate:
        switch (action) {
        case Action::ScreenshotWindow:
            return {{kMateWindowManager, "run-command-window-screenshot"}};
        case Action::MediaPlay:
            return {{kMateMediaKeys, "play"}};
        case Action::MediaNext:
            return {{kMateMediaKeys, "next"}};
        case Action::MediaPrevious:
            return {{kMateMediaKeys, "previous"}};
        default:
            return {};
        }
    }
    return {};
}

struct SourceUnref
{
    void operator()(GSettingsSchemaSource* source) const { g_settings_schema_source_unref(source); }
};
struct SchemaUnref
{
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
struct VariantUnref
{
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using SourcePtr = std::unique_ptr<GSettingsSchemaSource, SourceUnref>;
using SchemaPtr = std::unique_ptr<GSettingsSchema, SchemaUnref>;
using VariantPtr = std::unique_ptr<GVariant, VariantUnref>;

// The schema source to read: the system's, or one directory's only.
SourcePtr schemaSource(const QString& directory)
{
    if (directory.isEmpty()) {
        GSettingsSchemaSource* source = g_settings_schema_source_get_default();
        return SourcePtr(source ? g_settings_schema_source_ref(source) : nullptr);
    }
    GError* error = nullptr;
    GSettingsSchemaSource* source = g_settings_schema_source_new_from_directory(
        directory.toLocal8Bit().constData(), nullptr, TRUE, &error);
    if (error) {
        qCWarning(lcKeySettings) << "cannot read the schemas in" << directory << error->message;
        g_error_free(error);
    }
    return SourcePtr(source);
}

SchemaPtr lookup(GSettingsSchemaSource* source, const char* schemaId)
{
    return SchemaPtr(source ? g_settings_schema_source_lookup(source, schemaId, TRUE) : nullptr);
}

// The accelerators stored under one key: a string or a list of strings.
QStringList accelerators(GSettingsSchema* schema, const char* key)
{
    if (!g_settings_schema_has_key(schema, key))
        return {};
    const GObjectRef<GSettings> settings(g_settings_new_full(schema, nullptr, nullptr));
    const VariantPtr value(g_settings_get_value(settings.get(), key));
    QStringList result;
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) {
        result.append(QString::fromUtf8(g_variant_get_string(value.get(), nullptr)));
    } else if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY)) {
        gsize count = 0;
        const gchar** items = g_variant_get_strv(value.get(), &count);
        for (gsize i = 0; i < count; ++i)
            result.append(QString::fromUtf8(items[i]));
        g_free(items);
    }
    return result;
}

} // namespace

GSettingsKeySettings::GSettingsKeySettings(Family family, QString schemaDirectory)
    : m_family(family), m_schemaDirectory(std::move(schemaDirectory))
{}

bool GSettingsKeySettings::schemaInstalled() const
{
    const SourcePtr source = schemaSource(m_schemaDirectory);
    return lookup(source.get(), mainSchema(m_family)) != nullptr;
}

QList<DesktopKeyBinding> GSettingsKeySettings::bindings(Action action) const
{
    const QList<SettingsKey> keys = settingsKeys(m_family, action);
    if (keys.isEmpty())
        return {};
    const SourcePtr source = schemaSource(m_schemaDirectory);
    QList<DesktopKeyBinding> result;
    for (const SettingsKey& key : keys) {
        const SchemaPtr schema = lookup(source.get(), key.schema);
        if (!schema)
            continue;
        for (const QString& accelerator : accelerators(schema.get(), key.key)) {
            const std::optional<DesktopKeyBinding> binding = GtkAccelerator::parse(accelerator);
            if (binding && !result.contains(*binding))
                result.append(*binding);
        }
    }
    return result;
}

} // namespace Tessaline

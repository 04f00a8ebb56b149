// SPDX-License-Identifier: MIT
#include "platform/x11/XcbHotKeySystemCombos.h"

#include "platform/x11/XcbHotKeyKeysyms.h"

#include <hotkey/HotKeyService.h>

#include <gio/gio.h>

namespace Tessaline {
namespace {

QStringList valueStrings(GVariant* value)
{
    QStringList strings;
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
        strings.append(QString::fromUtf8(g_variant_get_string(value, nullptr)));
    } else if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING_ARRAY)) {
        gsize count = 0;
        const gchar** items = g_variant_get_strv(value, &count);
        for (gsize i = 0; i < count; ++i)
            strings.append(QString::fromUtf8(items[i]));
        g_free(items);
    }
    return strings;
}

} // namespace

QStringList XcbHotKeySystemCombos::schemaIds()
{
    return {
        QStringLiteral("org.gnome.desktop.wm.keybindings"),
        QStringLiteral("org.gnome.mutter.keybindings"),
        QStringLiteral("org.gnome.shell.keybindings"),
        QStringLiteral("org.gnome.settings-daemon.plugins.media-keys"),
        QStringLiteral("org.cinnamon.desktop.keybindings.wm"),
        QStringLiteral("org.mate.Marco.global-keybindings"),
    };
}

std::optional<QList<QVariantMap>> XcbHotKeySystemCombos::read()
{
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    if (source == nullptr)
        return std::nullopt;

    bool anySchema = false;
    QList<QVariantMap> entries;
    for (const QString& id : schemaIds()) {
        const QByteArray idBytes = id.toUtf8();
        GSettingsSchema* schema =
            g_settings_schema_source_lookup(source, idBytes.constData(), TRUE);
        if (schema == nullptr)
            continue;
        anySchema = true;
        GSettings* settings = g_settings_new_full(schema, nullptr, nullptr);
        gchar** keys = g_settings_schema_list_keys(schema);
        for (gchar** key = keys; key != nullptr && *key != nullptr; ++key) {
            GVariant* value = g_settings_get_value(settings, *key);
            for (const QString& accelerator : valueStrings(value)) {
                const auto combo = XcbHotKeyKeysyms::parseAccelerator(accelerator);
                if (!combo)
                    continue;
                entries.append(QVariantMap{
                    {QLatin1String(HotKey::HotKeyService::enabledKey), true},
                    {QLatin1String(HotKey::HotKeyService::keyCodeKey),
                     QVariant::fromValue<qint64>(combo->carbonKeyCode)},
                    {QLatin1String(HotKey::HotKeyService::modifiersKey),
                     QVariant::fromValue<qint64>(combo->carbonModifiers)},
                    {QLatin1String(HotKey::HotKeyService::nameKey),
                     id + QLatin1Char(' ') + QString::fromUtf8(*key)},
                });
            }
            g_variant_unref(value);
        }
        g_strfreev(keys);
        g_object_unref(settings);
        g_settings_schema_unref(schema);
    }
    if (!anySchema)
        return std::nullopt;
    return entries;
}

} // namespace Tessaline

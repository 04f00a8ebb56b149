// SPDX-License-Identifier: MIT
#include "platform/desktop/DesktopEntries.h"

#include "platform/desktop/GObjectRef.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace Tessaline {
namespace {

constexpr auto kDesktopSuffix = ".desktop";

QString withoutDesktopSuffix(const char* id)
{
    QString text = QString::fromUtf8(id);
    if (text.endsWith(QLatin1String(kDesktopSuffix)))
        text.chop(static_cast<int>(qstrlen(kDesktopSuffix)));
    return text;
}

/// One installed entry as the WM_CLASS matching needs it.
struct ClassCandidate
{
    QString id;
    QString startupWMClass;
    /// The file name of the program the entry runs ("mousepad"); empty when unknown.
    QString program;
    bool shown;
};

} // namespace

struct DesktopEntries::Private
{
    GObjectRef<GAppInfoMonitor> monitor;
    gulong changedHandler = 0;
    mutable QHash<QString, std::optional<DesktopEntryInfo>> entries;
    mutable std::optional<QList<ClassCandidate>> candidates;
    mutable QHash<QString, std::optional<QString>> classIds;

    void clear()
    {
        entries.clear();
        candidates.reset();
        classIds.clear();
    }

    static void onChanged(GAppInfoMonitor*, gpointer self) { static_cast<Private*>(self)->clear(); }

    const QList<ClassCandidate>& allCandidates() const
    {
        if (!candidates) {
            QList<ClassCandidate> list;
            GList* all = g_app_info_get_all();
            for (GList* it = all; it; it = it->next) {
                auto* info = static_cast<GAppInfo*>(it->data);
                const char* id = g_app_info_get_id(info);
                if (!id || !G_IS_DESKTOP_APP_INFO(info))
                    continue;
                const char* wmClass =
                    g_desktop_app_info_get_startup_wm_class(G_DESKTOP_APP_INFO(info));
                const char* executable = g_app_info_get_executable(info);
                const QString program =
                    executable ? QString::fromUtf8(executable).section(QLatin1Char('/'), -1)
                               : QString();
                list.append(ClassCandidate{withoutDesktopSuffix(id),
                                           wmClass ? QString::fromUtf8(wmClass) : QString(),
                                           program, g_app_info_should_show(info) != FALSE});
            }
            g_list_free_full(all, g_object_unref);
            // Entries shown in menus win over hidden helpers that claim the same window class.
            std::stable_sort(list.begin(), list.end(),
                             [](const ClassCandidate& a, const ClassCandidate& b) {
                                 return a.shown && !b.shown;
                             });
            candidates = std::move(list);
        }
        return *candidates;
    }
};

DesktopEntries::DesktopEntries() : d(std::make_unique<Private>())
{
    d->monitor = GObjectRef<GAppInfoMonitor>(g_app_info_monitor_get());
    if (d->monitor) {
        d->changedHandler =
            g_signal_connect(d->monitor.get(), "changed", G_CALLBACK(&Private::onChanged), d.get());
    }
}

DesktopEntries::~DesktopEntries()
{
    if (d->monitor && d->changedHandler)
        g_signal_handler_disconnect(d->monitor.get(), d->changedHandler);
}

std::optional<DesktopEntryInfo> DesktopEntries::entry(const QString& id) const
{
    if (id.isEmpty())
        return std::nullopt;
    const auto cached = d->entries.constFind(id);
    if (cached != d->entries.constEnd())
        return *cached;

    std::optional<DesktopEntryInfo> result;
    const QByteArray fileId = (id + QLatin1String(kDesktopSuffix)).toUtf8();
    GObjectRef<GDesktopAppInfo> info(g_desktop_app_info_new(fileId.constData()));
    if (info) {
        DesktopEntryInfo found;
        found.id = id;
        if (const char* name = g_app_info_get_name(G_APP_INFO(info.get())))
            found.name = QString::fromUtf8(name);
        if (char* icon = g_desktop_app_info_get_string(info.get(), "Icon")) {
            found.icon = QString::fromUtf8(icon).trimmed();
            g_free(icon);
        }
        result = found;
    }
    d->entries.insert(id, result);
    return result;
}

std::optional<QString> DesktopEntries::idForWindowClass(const QString& instance,
                                                        const QString& windowClass) const
{
    if (instance.isEmpty() && windowClass.isEmpty())
        return std::nullopt;
    const QString key = instance + QLatin1Char('\n') + windowClass;
    const auto cached = d->classIds.constFind(key);
    if (cached != d->classIds.constEnd())
        return *cached;

    const QList<ClassCandidate>& all = d->allCandidates();
    std::optional<QString> result;
    // The entry's own claim comes first: StartupWMClass equal to the class, then the instance.
    for (const QString& name : {windowClass, instance}) {
        if (result || name.isEmpty())
            break;
        for (const ClassCandidate& candidate : all) {
            if (candidate.startupWMClass == name) {
                result = candidate.id;
                break;
            }
        }
    }
    // Then an entry named after the window: the whole id, or the last part of a reverse-DNS id
    // ("org.xfce.mousepad" for the class "Mousepad"), compared without case.
    for (const QString& name : {instance, windowClass}) {
        if (result || name.isEmpty())
            break;
        for (const ClassCandidate& candidate : all) {
            const QString lastPart = candidate.id.section(QLatin1Char('.'), -1);
            if (candidate.id.compare(name, Qt::CaseInsensitive) == 0 ||
                lastPart.compare(name, Qt::CaseInsensitive) == 0) {
                result = candidate.id;
                break;
            }
        }
    }
    d->classIds.insert(key, result);
    return result;
}

std::optional<QString> DesktopEntries::idForExecutable(const QString& programName) const
{
    if (programName.isEmpty())
        return std::nullopt;
    for (const ClassCandidate& candidate : d->allCandidates()) {
        if (candidate.program == programName)
            return candidate.id;
    }
    return std::nullopt;
}

} // namespace Tessaline

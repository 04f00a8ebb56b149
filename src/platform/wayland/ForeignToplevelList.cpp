// SPDX-License-Identifier: MIT
#include "platform/wayland/ForeignToplevelList.h"

#include "LogCategories.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cstring>
#include <vector>

#include <wayland-client.h>

namespace Tessaline {

// The foreign-toplevel management protocol (zwlr_foreign_toplevel_manager_v1, version 3),
// described for libwayland from the protocol's documentation: each message's name, its
// argument signature and the interfaces of its object arguments, in the protocol's order.
namespace toplevel_protocol {

extern const wl_interface handleInterface;
extern const wl_interface managerInterface;

// Only object and new-id arguments name an interface; the others take a null entry.
const wl_interface* noTypes[] = {nullptr, nullptr, nullptr, nullptr, nullptr};
const wl_interface* seatTypes[] = {&wl_seat_interface};
const wl_interface* outputTypes[] = {&wl_output_interface};
const wl_interface* rectangleTypes[] = {&wl_surface_interface, nullptr, nullptr, nullptr, nullptr};
const wl_interface* handleTypes[] = {&handleInterface};

const wl_message handleRequests[] = {
    {"set_maximized", "", noTypes},
    {"unset_maximized", "", noTypes},
    {"set_minimized", "", noTypes},
    {"unset_minimized", "", noTypes},
    {"activate", "o", seatTypes},
    {"close", "", noTypes},
    {"set_rectangle", "oiiii", rectangleTypes},
    {"destroy", "", noTypes},
    {"set_fullscreen", "2?o", outputTypes},
    {"unset_fullscreen", "2", noTypes},
};
const wl_message handleEvents[] = {
    {"title", "s", noTypes},
    {"app_id", "s", noTypes},
    {"output_enter", "o", outputTypes},
    {"output_leave", "o", outputTypes},
    {"state", "a", noTypes},
    {"done", "", noTypes},
    {"closed", "", noTypes},
    {"parent", "3?o", handleTypes},
};
const wl_message managerRequests[] = {{"stop", "", noTypes}};
const wl_message managerEvents[] = {
    {"toplevel", "n", handleTypes},
    {"finished", "", noTypes},
};

const wl_interface handleInterface = {
    "zwlr_foreign_toplevel_handle_v1", 3, 10, handleRequests, 8, handleEvents};
const wl_interface managerInterface = {
    "zwlr_foreign_toplevel_manager_v1", 3, 1, managerRequests, 2, managerEvents};

// Request opcodes and the state value used here.
constexpr uint32_t kActivateRequest = 4;
constexpr uint32_t kDestroyRequest = 7;
constexpr uint32_t kStopRequest = 0;
constexpr uint32_t kActivatedState = 2;
constexpr uint32_t kVersion = 3;

} // namespace toplevel_protocol

namespace tp = toplevel_protocol;

struct ForeignToplevelList::Handle
{
    Connection* connection = nullptr;
    wl_proxy* proxy = nullptr;
    Toplevel current;
    Toplevel pending;
    /// Whether the compositor finished describing the window once.
    bool announced = false;
};

struct ForeignToplevelList::Connection
{
    ForeignToplevelList* owner = nullptr;
    wl_display* display = nullptr;
    wl_registry* registry = nullptr;
    wl_proxy* manager = nullptr;
    wl_seat* seat = nullptr;
    std::vector<std::unique_ptr<Handle>> handles;
    std::unique_ptr<QSocketNotifier> notifier;

    ~Connection()
    {
        notifier.reset();
        for (const std::unique_ptr<Handle>& handle : handles)
            wl_proxy_marshal_flags(handle->proxy, tp::kDestroyRequest, nullptr,
                                   wl_proxy_get_version(handle->proxy), WL_MARSHAL_FLAG_DESTROY);
        if (manager) {
            wl_proxy_marshal_flags(manager, tp::kStopRequest, nullptr,
                                   wl_proxy_get_version(manager), 0);
            wl_proxy_destroy(manager);
        }
        if (seat)
            wl_seat_destroy(seat);
        if (registry)
            wl_registry_destroy(registry);
        if (display) {
            wl_display_flush(display);
            wl_display_disconnect(display);
        }
    }

    Handle* handleOf(wl_proxy* proxy)
    {
        for (const std::unique_ptr<Handle>& handle : handles) {
            if (handle->proxy == proxy)
                return handle.get();
        }
        return nullptr;
    }

    void remove(Handle* gone)
    {
        wl_proxy_marshal_flags(gone->proxy, tp::kDestroyRequest, nullptr,
                               wl_proxy_get_version(gone->proxy), WL_MARSHAL_FLAG_DESTROY);
        handles.erase(std::remove_if(handles.begin(), handles.end(),
                                     [gone](const std::unique_ptr<Handle>& handle) {
                                         return handle.get() == gone;
                                     }),
                      handles.end());
    }
};

namespace {

void onTitle(void* data, wl_proxy*, const char* title)
{
    static_cast<ForeignToplevelList::Toplevel*>(data)->title = QString::fromUtf8(title);
}

void onAppId(void* data, wl_proxy*, const char* appId)
{
    static_cast<ForeignToplevelList::Toplevel*>(data)->appId = QString::fromUtf8(appId);
}

void onOutput(void*, wl_proxy*, wl_output*) {}

void onState(void* data, wl_proxy*, wl_array* states)
{
    bool activated = false;
    const auto* values = static_cast<const uint32_t*>(states->data);
    for (size_t i = 0; i < states->size / sizeof(uint32_t); ++i)
        activated = activated || values[i] == tp::kActivatedState;
    static_cast<ForeignToplevelList::Toplevel*>(data)->activated = activated;
}

void onParent(void*, wl_proxy*, wl_proxy*) {}

// The listener tables libwayland calls, one function per event in the protocol's order.
struct HandleListener
{
    void (*title)(void*, wl_proxy*, const char*);
    void (*appId)(void*, wl_proxy*, const char*);
    void (*outputEnter)(void*, wl_proxy*, wl_output*);
    void (*outputLeave)(void*, wl_proxy*, wl_output*);
    void (*state)(void*, wl_proxy*, wl_array*);
    void (*done)(void*, wl_proxy*);
    void (*closed)(void*, wl_proxy*);
    void (*parent)(void*, wl_proxy*, wl_proxy*);
};

struct ManagerListener
{
    void (*toplevel)(void*, wl_proxy*, wl_proxy*);
    void (*finished)(void*, wl_proxy*);
};

} // namespace

ForeignToplevelList::ForeignToplevelList(QObject* parent) : QObject(parent)
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return;
    auto connection = std::make_unique<Connection>();
    connection->owner = this;
    connection->display = wl_display_connect(nullptr);
    if (!connection->display) {
        qCInfo(lcWayland) << "no Wayland compositor answers: the window list stays empty";
        return;
    }

    static const HandleListener handleListener = {
        [](void* data, wl_proxy* p, const char* title) {
            onTitle(&static_cast<Handle*>(data)->pending, p, title);
        },
        [](void* data, wl_proxy* p, const char* appId) {
            onAppId(&static_cast<Handle*>(data)->pending, p, appId);
        },
        onOutput,
        onOutput,
        [](void* data, wl_proxy* p, wl_array* states) {
            onState(&static_cast<Handle*>(data)->pending, p, states);
        },
        [](void* data, wl_proxy*) {
            auto* handle = static_cast<Handle*>(data);
            handle->current = handle->pending;
            handle->announced = true;
            handle->connection->owner->committed();
        },
        [](void* data, wl_proxy*) {
            auto* handle = static_cast<Handle*>(data);
            Connection* connection = handle->connection;
            connection->remove(handle);
            connection->owner->committed();
        },
        onParent,
    };
    static const ManagerListener managerListener = {
        [](void* data, wl_proxy*, wl_proxy* proxy) {
            auto* connection = static_cast<Connection*>(data);
            auto handle = std::make_unique<Handle>();
            handle->connection = connection;
            handle->proxy = proxy;
            wl_proxy_add_listener(
                proxy,
                reinterpret_cast<void (**)(void)>(const_cast<HandleListener*>(&handleListener)),
                handle.get());
            connection->handles.push_back(std::move(handle));
        },
        [](void* data, wl_proxy* manager) {
            auto* connection = static_cast<Connection*>(data);
            qCInfo(lcWayland) << "the compositor stopped sending its window list";
            wl_proxy_destroy(manager);
            connection->manager = nullptr;
        },
    };
    static const wl_registry_listener registryListener = {
        [](void* data, wl_registry* registry, uint32_t name, const char* interface,
           uint32_t version) {
            auto* connection = static_cast<Connection*>(data);
            if (std::strcmp(interface, tp::managerInterface.name) == 0 && !connection->manager) {
                connection->manager = static_cast<wl_proxy*>(wl_registry_bind(
                    registry, name, &tp::managerInterface, std::min(version, tp::kVersion)));
                wl_proxy_add_listener(connection->manager,
                                      reinterpret_cast<void (**)(void)>(
                                          const_cast<ManagerListener*>(&managerListener)),
                                      connection);
            } else if (std::strcmp(interface, wl_seat_interface.name) == 0 && !connection->seat) {
                connection->seat =
                    static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
            }
        },
        [](void*, wl_registry*, uint32_t) {},
    };

    connection->registry = wl_display_get_registry(connection->display);
    wl_registry_add_listener(connection->registry, &registryListener, connection.get());
    // The first round trip lists the globals, the second brings the windows that exist now.
    if (wl_display_roundtrip(connection->display) < 0 || !connection->manager ||
        wl_display_roundtrip(connection->display) < 0) {
        qCInfo(lcWayland) << "the compositor offers no window list (foreign-toplevel management)";
        return;
    }
    connection->notifier = std::make_unique<QSocketNotifier>(wl_display_get_fd(connection->display),
                                                             QSocketNotifier::Read);
    connect(connection->notifier.get(), &QSocketNotifier::activated, this,
            &ForeignToplevelList::dispatch);
    m_connection = std::move(connection);
    m_lastActivated = activatedAppId();
    qCDebug(lcWayland) << "window list:" << m_connection->handles.size() << "windows";
}

ForeignToplevelList::~ForeignToplevelList() = default;

bool ForeignToplevelList::isAvailable() const
{
    return m_connection && m_connection->manager;
}

QList<ForeignToplevelList::Toplevel> ForeignToplevelList::toplevels() const
{
    QList<Toplevel> list;
    if (!m_connection)
        return list;
    for (const std::unique_ptr<Handle>& handle : m_connection->handles) {
        if (handle->announced)
            list.append(handle->current);
    }
    return list;
}

std::optional<QString> ForeignToplevelList::activatedAppId() const
{
    for (const Toplevel& toplevel : toplevels()) {
        if (toplevel.activated)
            return toplevel.appId;
    }
    return std::nullopt;
}

bool ForeignToplevelList::activate(const QString& appId)
{
    if (!isAvailable() || !m_connection->seat)
        return false;
    const auto& handles = m_connection->handles;
    const auto found = std::find_if(handles.crbegin(), handles.crend(),
                                    [&appId](const std::unique_ptr<Handle>& handle) {
                                        return handle->announced && handle->current.appId == appId;
                                    });
    if (found == handles.crend())
        return false;
    wl_proxy_marshal_flags((*found)->proxy, tp::kActivateRequest, nullptr,
                           wl_proxy_get_version((*found)->proxy), 0, m_connection->seat);
    return wl_display_flush(m_connection->display) >= 0;
}

void ForeignToplevelList::dispatch()
{
    if (wl_display_dispatch(m_connection->display) < 0) {
        qCWarning(lcWayland) << "lost the connection to the compositor's window list";
        m_connection.reset();
        committed();
        return;
    }
    wl_display_flush(m_connection->display);
}

void ForeignToplevelList::committed()
{
    const std::optional<QString> activated = activatedAppId();
    if (activated == m_lastActivated)
        return;
    m_lastActivated = activated;
    emit activatedAppChanged();
}

} // namespace Tessaline

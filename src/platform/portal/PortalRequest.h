// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QLoggingCategory>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

namespace Tessaline {

/// One request made to the desktop portal: waits for the Response signal of its request object
/// and hands the answer to a callback once, then deletes itself.
class PortalRequest : public QObject
{
    Q_OBJECT
public:
    using Callback = std::function<void(uint response, const QVariantMap& results)>;
    /// A logging category, as the category macros declare it.
    using LogCategory = const QLoggingCategory& (*)();

    /// The answer of a request that failed for a reason other than the user's.
    static constexpr uint responseOther = 2;

    /// Listens at `path`, the request object the portal will make for this caller's token; it
    /// is listened to before the call is made, so that no answer comes before it.
    PortalRequest(QDBusConnection bus, const QString& path, Callback callback,
                  QObject* parent = nullptr);

    /// The portal's own path for the request, when it differs from the expected one.
    void follow(const QString& path);
    /// Ends the request with `response` and no results (the call itself failed).
    void fail(uint response);

    /// The request path the portal makes for `token` on this connection.
    static QString pathFor(const QDBusConnection& bus, const QString& token);

    /// Calls `method` of the portal's `interface` as a request with the handle token `token`:
    /// `callback` hears the request's Response, or responseOther (2) when the call itself
    /// failed (logged under `category`). The request lives as a child of `owner`.
    static void call(const QDBusConnection& bus, const QString& interface, const QString& method,
                     const QVariantList& arguments, const QString& token, Callback callback,
                     QObject* owner, LogCategory category);

    /// Creates a session of the portal's `interface`, `token` naming both the request and the
    /// session: `callback` hears the response and the new session's handle.
    static void createSession(const QDBusConnection& bus, const QString& interface,
                              const QString& token,
                              std::function<void(uint response, const QString& session)> callback,
                              QObject* owner, LogCategory category);

    /// An object path the portal sent, as a path or as a string (session handles come as
    /// either).
    static QString pathText(const QVariant& value);

    /// Ends every request that is a child of `owner` as failed (responseOther) when the portal
    /// leaves `bus`: a portal that is gone answers none of them.
    static void failAllWhenPortalLeaves(const QDBusConnection& bus, QObject* owner,
                                        LogCategory category);

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap& results);

private:
    bool listen(const QString& path);
    void stopListening();

    QDBusConnection m_bus;
    QString m_path;
    Callback m_callback;
};

} // namespace Tessaline

// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
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

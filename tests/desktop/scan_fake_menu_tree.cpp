// SPDX-License-Identifier: MIT
// Serves a hostile menu tree over the accessibility D-Bus interfaces on the session bus, under
// the name org.tessaline.FakeMenuTree: a menu that contains the menu bar again (a cycle) and a
// chain of 5000 nested submenus (an endless depth for any reader).
#include "platform/atspi/AtspiBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QHash>

#include <atspi/atspi-constants.h>

using namespace Tessaline;

namespace {

const QString kService = QStringLiteral("org.tessaline.FakeMenuTree");
const QString kPrefix = QStringLiteral("/org/a11y/atspi/accessible");
constexpr int kChainLength = 5000;

struct Node
{
    QString name;
    uint role = ATSPI_ROLE_MENU_ITEM;
    QString binding;
    QList<QString> children;
};

class FakeTree final : public QDBusVirtualObject
{
public:
    FakeTree()
    {
        add(QStringLiteral("root"),
            {QStringLiteral("fake"), ATSPI_ROLE_APPLICATION, {}, {QStringLiteral("frame")}});
        add(QStringLiteral("frame"),
            {QStringLiteral("Fake"), ATSPI_ROLE_FRAME, {}, {QStringLiteral("bar")}});
        add(QStringLiteral("bar"), {QString(), ATSPI_ROLE_MENU_BAR, {}, {QStringLiteral("file")}});
        add(QStringLiteral("file"),
            {QStringLiteral("File"),
             ATSPI_ROLE_MENU,
             QStringLiteral("<Alt>f;<Alt>f;"),
             {QStringLiteral("save"), QStringLiteral("loop"), QStringLiteral("chain0")}});
        add(QStringLiteral("save"), {QStringLiteral("Save  "),
                                     ATSPI_ROLE_MENU_ITEM,
                                     QStringLiteral("s;<Alt>f:s;<Primary>s"),
                                     {}});
        // A submenu whose child is the menu bar itself, and one holding its own parent.
        add(QStringLiteral("loop"),
            {QStringLiteral("Loop"),
             ATSPI_ROLE_MENU,
             {},
             {QStringLiteral("bar"), QStringLiteral("file"), QStringLiteral("again")}});
        add(QStringLiteral("again"), {QStringLiteral("Again"),
                                      ATSPI_ROLE_MENU_ITEM,
                                      QStringLiteral(";;<Primary>g"),
                                      {QStringLiteral("loop")}});
        for (int i = 0; i < kChainLength; ++i) {
            const QString id = QStringLiteral("chain%1").arg(i);
            Node node{QStringLiteral("Level %1").arg(i), ATSPI_ROLE_MENU, {}, {}};
            if (i + 1 < kChainLength)
                node.children = {QStringLiteral("chain%1").arg(i + 1)};
            // Shallow levels carry a shortcut; so does the bottom of the chain.
            if (i < 3 || i + 1 == kChainLength)
                node.binding = QStringLiteral(";;<Primary>F%1").arg(i < 3 ? i + 1 : 12);
            add(id, node);
        }
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QString id = message.path().mid(kPrefix.size() + 1);
        const auto node = m_nodes.constFind(id);
        if (node == m_nodes.constEnd())
            return false;
        const QString member = message.member();
        QDBusMessage reply;
        if (member == QStringLiteral("GetRole")) {
            reply = message.createReply(QVariant::fromValue(node->role));
        } else if (member == QStringLiteral("GetChildren")) {
            QList<AtspiReference> children;
            for (const QString& child : node->children)
                children.append({kService, QDBusObjectPath(kPrefix + QLatin1Char('/') + child)});
            reply = message.createReply(QVariant::fromValue(children));
        } else if (member == QStringLiteral("Get") &&
                   message.arguments().value(1) == QStringLiteral("Name")) {
            reply = message.createReply(QVariant::fromValue(QDBusVariant(node->name)));
        } else if (member == QStringLiteral("GetKeyBinding")) {
            if (node->binding.isEmpty())
                reply = message.createErrorReply(
                    QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"),
                    QStringLiteral("no Action interface"));
            else
                reply = message.createReply(node->binding);
        } else {
            reply = message.createErrorReply(
                QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"), member);
        }
        connection.send(reply);
        return true;
    }

private:
    void add(const QString& id, const Node& node) { m_nodes.insert(id, node); }

    QHash<QString, Node> m_nodes;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    AtspiBus::registerTypes();
    FakeTree tree;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(kPrefix, &tree, QDBusConnection::SubPath))
        return 1;
    if (!bus.registerService(kService))
        return 1;
    return application.exec();
}

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TextInserter.h"
#include "platform/atspi/AtspiBus.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>

#include <memory>
#include <optional>

namespace Tessaline {

class AtspiEventWatcher;

/// Inserts text through the editable-text interface of the accessible object that last took
/// the keyboard focus in another application (focus events of the accessibility bus): at its
/// caret, then moves the caret past the text. Tessaline's own controls are never the target.
class AtspiTextInserter final : public QObject, public TextInserter
{
    Q_OBJECT
public:
    /// Without an accessibility bus it never inserts.
    explicit AtspiTextInserter(QObject* parent = nullptr);
    ~AtspiTextInserter() override;

    bool insertAtCaret(const QString& text) override;

private:
    void noteFocus(const AtspiReference& object);
    bool isOwn(const QString& busName) const;

    std::optional<QDBusConnection> m_bus;
    std::unique_ptr<AtspiEventWatcher> m_events;
    std::optional<AtspiReference> m_focused;
    qint64 m_ownPid;
    mutable QHash<QString, bool> m_own;
};

} // namespace Tessaline

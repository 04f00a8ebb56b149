// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"

#include <QObject>

namespace Tessaline {

/// The clipboard of a Wayland session, where a client may read the clipboard only while one of
/// its windows has the keyboard focus. The text seen the last time Tessaline had the focus
/// stands in while it has none, which is when the HUD's helpers run: just after the HUD closed.
class WaylandClipboard final : public QObject, public Clipboard
{
    Q_OBJECT
public:
    explicit WaylandClipboard(QObject* parent = nullptr);

    std::optional<QString> text() const override;
    void clear() override;
    void setText(const QString& text) override;

private:
    void remember();
    static std::optional<QString> liveText();

    std::optional<QString> m_seen;
};

} // namespace Tessaline

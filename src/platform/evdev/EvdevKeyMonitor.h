// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemKeyMonitor.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class QSocketNotifier;

namespace Tessaline {

class RawKeyTranslator;

/// The coach tips' keys read from the kernel's input devices, for sessions that offer no global
/// key events (Wayland). Only the tip keys pass: volume, mute, brightness, play, next,
/// previous and Print; every other key is dropped as it is read, never kept, passed on or
/// logged. Needs read access to the devices, which Linux gives the "input" group.
class EvdevKeyMonitor final : public QObject, public SystemKeyMonitor
{
    Q_OBJECT
public:
    /// `deviceFolder` holds the event devices ("/dev/input"; a folder of fixtures in tests).
    explicit EvdevKeyMonitor(QString deviceFolder = QStringLiteral("/dev/input"),
                             QObject* parent = nullptr);
    ~EvdevKeyMonitor() override;

    /// False when no device with a tip key could be opened; unavailableReason() says why.
    bool start(Handler handler) override;
    void stop() override;

    /// Why the tips cannot hear their keys, in one line for the user; empty while running.
    QString unavailableReason() const override { return m_unavailableReason; }

    /// True for the kernel key codes of the tip keys.
    static bool isTipKey(quint16 code);

private:
    struct Device;
    void readDevice(Device& device);

    QString m_deviceFolder;
    Handler m_handler;
    std::vector<std::unique_ptr<Device>> m_devices;
    std::unique_ptr<RawKeyTranslator> m_translator;
    QString m_unavailableReason;
};

} // namespace Tessaline

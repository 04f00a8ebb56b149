// SPDX-License-Identifier: MIT
#include "platform/evdev/EvdevKeyMonitor.h"

#include "LogCategories.h"
#include "platform/x11/RawKeyTranslator.h"

#include <QDir>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Tessaline {

namespace {

// The volume, brightness, media and screenshot keys of the coach tips.
constexpr std::array<quint16, 9> kTipKeys{KEY_MUTE,           KEY_VOLUMEDOWN,   KEY_VOLUMEUP,
                                          KEY_BRIGHTNESSDOWN, KEY_BRIGHTNESSUP, KEY_PLAYPAUSE,
                                          KEY_NEXTSONG,       KEY_PREVIOUSSONG, KEY_SYSRQ};
// xkb key codes are the kernel's plus 8.
constexpr quint32 kXkbOffset = 8;

// Whether the device can send any tip key. A file that is no input device (its capabilities
// cannot be asked) is read anyway.
bool offersTipKeys(int fd)
{
    std::array<unsigned long, KEY_MAX / (8 * sizeof(unsigned long)) + 1> bits{};
    if (ioctl(fd, EVIOCGBIT(EV_KEY, sizeof(bits)), bits.data()) < 0)
        return errno == ENOTTY;
    constexpr std::size_t perWord = 8 * sizeof(unsigned long);
    for (quint16 key : kTipKeys) {
        if (bits[key / perWord] & (1ul << (key % perWord)))
            return true;
    }
    return false;
}

} // namespace

struct EvdevKeyMonitor::Device
{
    int fd = -1;
    std::unique_ptr<QSocketNotifier> notifier;
    ~Device()
    {
        notifier.reset();
        if (fd >= 0)
            ::close(fd);
    }
};

EvdevKeyMonitor::EvdevKeyMonitor(QString deviceFolder, QObject* parent)
    : QObject(parent), m_deviceFolder(std::move(deviceFolder))
{}

EvdevKeyMonitor::~EvdevKeyMonitor() = default;

bool EvdevKeyMonitor::isTipKey(quint16 code)
{
    return std::find(kTipKeys.cbegin(), kTipKeys.cend(), code) != kTipKeys.cend();
}

bool EvdevKeyMonitor::start(Handler handler)
{
    stop();
    if (!m_translator) {
        // The tip keys mean the same on every layout: the default keymap names them.
        std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
            xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
        RawKeyTranslator::KeymapPtr keymap(
            context ? xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)
                    : nullptr);
        if (!keymap) {
            m_unavailableReason = QStringLiteral("Coach tips are off: the keyboard layouts could "
                                                 "not be read.");
            return false;
        }
        m_translator = std::make_unique<RawKeyTranslator>(std::move(keymap));
    }

    const QStringList names =
        QDir(m_deviceFolder).entryList({QStringLiteral("event*")}, QDir::System | QDir::Files);
    bool denied = false;
    for (const QString& name : names) {
        const QByteArray path = QDir(m_deviceFolder).filePath(name).toLocal8Bit();
        const int fd = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0) {
            denied = denied || errno == EACCES || errno == EPERM;
            continue;
        }
        auto device = std::make_unique<Device>();
        device->fd = fd;
        if (!offersTipKeys(fd))
            continue;
        device->notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
        Device* raw = device.get();
        connect(device->notifier.get(), &QSocketNotifier::activated, this,
                [this, raw] { readDevice(*raw); });
        m_devices.push_back(std::move(device));
    }
    if (m_devices.empty()) {
        m_unavailableReason =
            denied ? QStringLiteral("Coach tips are off: Tessaline may not read the keyboard. "
                                    "Add your user to the \"input\" group and log in again.")
                   : QStringLiteral("Coach tips are off: no keyboard with media or volume keys "
                                    "was found.");
        qCInfo(lcCoach) << m_unavailableReason;
        return false;
    }
    m_unavailableReason.clear();
    m_handler = std::move(handler);
    return true;
}

void EvdevKeyMonitor::stop()
{
    m_devices.clear();
    m_handler = nullptr;
}

void EvdevKeyMonitor::readDevice(Device& device)
{
    input_event event{};
    while (::read(device.fd, &event, sizeof(event)) == static_cast<ssize_t>(sizeof(event))) {
        // Every other key is dropped here, unseen by anything else.
        if (event.type != EV_KEY || !isTipKey(event.code) || !m_handler)
            continue;
        const quint32 key = event.code + kXkbOffset;
        std::optional<SystemKeyEvent> translated;
        if (event.value == 0)
            translated = m_translator->keyReleased(key);
        else
            translated = m_translator->keyPressed(key, event.value == 2);
        if (translated)
            m_handler(*translated);
    }
}

} // namespace Tessaline

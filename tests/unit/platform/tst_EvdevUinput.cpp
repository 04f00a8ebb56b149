// SPDX-License-Identifier: MIT
// The coach tips' keys read from a real kernel input device: a virtual keyboard made through
// uinput presses an ordinary key and a volume key, and only the volume key reaches the handler.
// Where the kernel offers no uinput device (containers, kernels without the module) the test
// cannot make a keyboard: it says why and exits with 77, which ctest reports as skipped.
#include "platform/evdev/EvdevKeyMonitor.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <linux/uinput.h>
#include <optional>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Tessaline;

namespace {

constexpr int kSkipped = 77;

/// The keys the virtual keyboard has: an ordinary key, a modifier and a tip key.
constexpr quint16 kKeys[] = {KEY_A, KEY_LEFTSHIFT, KEY_VOLUMEUP};

/// Makes the virtual keyboard and returns the path of its event device, or says why it could
/// not.
std::optional<QString> makeKeyboard(int uinput, QString* why)
{
    bool ok = ::ioctl(uinput, UI_SET_EVBIT, EV_KEY) == 0;
    for (quint16 key : kKeys)
        ok = ok && ::ioctl(uinput, UI_SET_KEYBIT, key) == 0;
    uinput_setup setup{};
    setup.id.bustype = BUS_VIRTUAL;
    setup.id.vendor = 0x1234;
    setup.id.product = 0x5678;
    std::strncpy(setup.name, "Tessaline test keyboard", UINPUT_MAX_NAME_SIZE - 1);
    ok = ok && ::ioctl(uinput, UI_DEV_SETUP, &setup) == 0 && ::ioctl(uinput, UI_DEV_CREATE) == 0;
    if (!ok) {
        *why = QStringLiteral("uinput refused the device: ") +
               QString::fromLocal8Bit(std::strerror(errno));
        return std::nullopt;
    }

    // The kernel names the device "inputN"; its event node is listed under it in sysfs and
    // appears in /dev/input once the device manager (or devtmpfs) made it.
    char sysname[64] = {};
    if (::ioctl(uinput, UI_GET_SYSNAME(sizeof(sysname)), sysname) < 0) {
        *why = QStringLiteral("the kernel did not name the device");
        return std::nullopt;
    }
    const QDir sysfs(QStringLiteral("/sys/devices/virtual/input/") + QString::fromLatin1(sysname));
    QString node;
    QDeadlineTimer deadline(5000);
    while (!deadline.hasExpired()) {
        const QStringList events = sysfs.entryList({QStringLiteral("event*")}, QDir::Dirs);
        if (!events.isEmpty() && QFile::exists(QStringLiteral("/dev/input/") + events.first()))
            return QStringLiteral("/dev/input/") + events.first();
        QThread::msleep(20);
    }
    *why = QStringLiteral("no /dev/input node appeared for ") + sysfs.path();
    return std::nullopt;
}

} // namespace

class TestEvdevUinput : public QObject
{
    Q_OBJECT

public:
    TestEvdevUinput(int uinput, QString node) : m_uinput(uinput), m_node(std::move(node)) {}

private slots:
    void onlyTheVolumeKeyPasses()
    {
        // The monitor reads every event device of a folder; this one holds only the test's.
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QVERIFY(QFile::link(m_node, dir.filePath(QStringLiteral("event0"))));
        QList<SystemKeyEvent> seen;
        EvdevKeyMonitor monitor(dir.path());
        QVERIFY2(monitor.start([&seen](const SystemKeyEvent& event) { seen.append(event); }),
                 qPrintable(monitor.unavailableReason()));

        press(KEY_LEFTSHIFT, 1);
        press(KEY_A, 1);
        press(KEY_A, 0);
        press(KEY_LEFTSHIFT, 0);
        press(KEY_VOLUMEUP, 1);
        press(KEY_VOLUMEUP, 0);
        QVERIFY(QTest::qWaitFor([&seen] { return seen.size() >= 2; }, 5000));
        QTest::qWait(100);

        const QList<SystemKeyEvent> expected{
            SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp,
                                             SystemKeyEvent::kKeyStateDown),
            SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp, SystemKeyEvent::kKeyStateUp),
        };
        QCOMPARE(seen, expected);
    }

private:
    void press(quint16 code, qint32 value)
    {
        input_event events[2] = {};
        events[0].type = EV_KEY;
        events[0].code = code;
        events[0].value = value;
        events[1].type = EV_SYN;
        events[1].code = SYN_REPORT;
        QCOMPARE(::write(m_uinput, events, sizeof(events)), ssize_t(sizeof(events)));
    }

    int m_uinput;
    QString m_node;
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int uinput = ::open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (uinput < 0) {
        std::printf("SKIP: no virtual keyboard can be made here: /dev/uinput: %s\n",
                    std::strerror(errno));
        return kSkipped;
    }
    QString why;
    const std::optional<QString> node = makeKeyboard(uinput, &why);
    if (!node) {
        std::printf("SKIP: no virtual keyboard can be made here: %s\n", qPrintable(why));
        ::close(uinput);
        return kSkipped;
    }
    TestEvdevUinput test(uinput, *node);
    const int result = QTest::qExec(&test, argc, argv);
    ::ioctl(uinput, UI_DEV_DESTROY);
    ::close(uinput);
    return result;
}

#include "tst_EvdevUinput.moc"

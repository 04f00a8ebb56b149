// SPDX-License-Identifier: MIT
// The coach tips' keys read from input devices: only the tip keys pass, translated as the X11
// monitor translates them. The "devices" are named pipes fed with the kernel's event records.
#include "platform/evdev/EvdevKeyMonitor.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Tessaline;

class TestEvdevKeyMonitor : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.emplace().isValid());
        m_seen.clear();
    }
    void cleanup()
    {
        if (m_writer >= 0)
            ::close(m_writer);
        m_writer = -1;
    }

    void onlyTipKeysPass()
    {
        const QByteArray path = m_dir->filePath(QStringLiteral("event3")).toLocal8Bit();
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        EvdevKeyMonitor monitor(m_dir->path());
        QVERIFY(monitor.start([this](const SystemKeyEvent& event) { m_seen.append(event); }));
        QVERIFY(monitor.unavailableReason().isEmpty());
        m_writer = ::open(path.constData(), O_WRONLY | O_NONBLOCK);
        QVERIFY(m_writer >= 0);

        key(KEY_LEFTSHIFT, 1);
        key(KEY_A, 1); // an ordinary key: dropped
        key(KEY_A, 0);
        key(KEY_LEFTSHIFT, 0);
        key(KEY_VOLUMEUP, 1);
        key(KEY_VOLUMEUP, 2);
        key(KEY_VOLUMEUP, 0);
        key(KEY_SYSRQ, 1);
        QVERIFY(QTest::qWaitFor([this] { return m_seen.size() >= 4; }, 5000));
        QTest::qWait(50);

        const QList<SystemKeyEvent> expected{
            SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp,
                                             SystemKeyEvent::kKeyStateDown),
            SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp, SystemKeyEvent::kKeyStateDown,
                                             true),
            SystemKeyEvent::auxControlButton(SystemKeyEvent::SoundUp, SystemKeyEvent::kKeyStateUp),
        };
        QCOMPARE(m_seen.size(), 4);
        QCOMPARE(m_seen.mid(0, 3), expected);
        QCOMPARE(m_seen.at(3).type, SystemKeyEvent::Type::KeyDown);
        QCOMPARE(m_seen.at(3).keyName, QStringLiteral("Print"));
        // The shift held before never reached the translator.
        QCOMPARE(m_seen.at(3).modifierFlags, quint64(0));

        // Stopping closes the devices: nothing reads the pipe any more.
        monitor.stop();
        ::signal(SIGPIPE, SIG_IGN);
        input_event mute{};
        mute.type = EV_KEY;
        mute.code = KEY_MUTE;
        mute.value = 1;
        QCOMPARE(::write(m_writer, &mute, sizeof(mute)), ssize_t(-1));
        QCOMPARE(errno, EPIPE);
        QTest::qWait(50);
        QCOMPARE(m_seen.size(), 4);
    }

    void noDeviceSaysWhy()
    {
        EvdevKeyMonitor monitor(m_dir->path());
        QVERIFY(!monitor.start([](const SystemKeyEvent&) {}));
        QCOMPARE(monitor.unavailableReason(),
                 QStringLiteral("Coach tips are off: no keyboard with media or volume keys was "
                                "found."));
    }

    void tipKeys()
    {
        for (quint16 code :
             {KEY_MUTE, KEY_VOLUMEDOWN, KEY_VOLUMEUP, KEY_BRIGHTNESSDOWN, KEY_BRIGHTNESSUP,
              KEY_PLAYPAUSE, KEY_NEXTSONG, KEY_PREVIOUSSONG, KEY_SYSRQ})
            QVERIFY(EvdevKeyMonitor::isTipKey(code));
        for (quint16 code : {KEY_A, KEY_ENTER, KEY_LEFTCTRL, KEY_F5, KEY_1})
            QVERIFY(!EvdevKeyMonitor::isTipKey(code));
    }

private:
    void key(quint16 code, qint32 value)
    {
        input_event event{};
        event.type = EV_KEY;
        event.code = code;
        event.value = value;
        QCOMPARE(::write(m_writer, &event, sizeof(event)), ssize_t(sizeof(event)));
        input_event sync{};
        sync.type = EV_SYN;
        QCOMPARE(::write(m_writer, &sync, sizeof(sync)), ssize_t(sizeof(sync)));
    }

    std::optional<QTemporaryDir> m_dir;
    QList<SystemKeyEvent> m_seen;
    int m_writer = -1;
};

QTEST_GUILESS_MAIN(TestEvdevKeyMonitor)
#include "tst_EvdevKeyMonitor.moc"

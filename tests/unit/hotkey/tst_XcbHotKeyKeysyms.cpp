// SPDX-License-Identifier: MIT
#include "platform/x11/XcbHotKeyKeysyms.h"
#include "platform/x11/XcbHotKeySystemCombos.h"

#include <hotkey/HotKeyService.h>
#include <hotkey/Key.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <xkbcommon/xkbcommon-keysyms.h>

using HotKey::KeyCombo;
using Tessaline::XcbHotKeyKeysyms;
using Tessaline::XcbHotKeySystemCombos;

Q_DECLARE_METATYPE(std::optional<KeyCombo>)
Q_DECLARE_METATYPE(std::optional<quint32>)

class TestXcbHotKeyKeysyms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyButFnHasASymbolThatMapsBack();
    void keysyms_data();
    void keysyms();
    void accelerators_data();
    void accelerators();
    void desktopBindingsAreRead();
};

void TestXcbHotKeyKeysyms::everyKeyButFnHasASymbolThatMapsBack()
{
    for (HotKey::Key key : HotKey::allKeys()) {
        const quint32 code = HotKey::carbonKeyCode(key);
        const auto symbol = XcbHotKeyKeysyms::keysym(code);
        if (key == HotKey::Key::function) {
            QVERIFY(!symbol.has_value());
            continue;
        }
        QVERIFY2(symbol.has_value(), qPrintable(HotKey::keyName(key)));
        QCOMPARE(XcbHotKeyKeysyms::carbonKeyCode(*symbol), std::optional<quint32>(code));
    }
    QVERIFY(!XcbHotKeyKeysyms::keysym(52).has_value());
    QVERIFY(!XcbHotKeyKeysyms::keysym(127).has_value());
}

void TestXcbHotKeyKeysyms::keysyms_data()
{
    QTest::addColumn<quint32>("carbonCode");
    QTest::addColumn<quint32>("keysym");
    QTest::addRow("k") << 40u << quint32(XKB_KEY_k);
    QTest::addRow("return") << 36u << quint32(XKB_KEY_Return);
    QTest::addRow("delete is backspace") << 51u << quint32(XKB_KEY_BackSpace);
    QTest::addRow("forward delete") << 117u << quint32(XKB_KEY_Delete);
    QTest::addRow("help is insert") << 114u << quint32(XKB_KEY_Insert);
    QTest::addRow("quote") << 39u << quint32(XKB_KEY_apostrophe);
    QTest::addRow("f5") << 96u << quint32(XKB_KEY_F5);
    QTest::addRow("command") << 55u << quint32(XKB_KEY_Super_L);
    QTest::addRow("keypad enter") << 76u << quint32(XKB_KEY_KP_Enter);
    QTest::addRow("volume up") << 72u << quint32(XKB_KEY_XF86AudioRaiseVolume);
    QTest::addRow("page up") << 116u << quint32(XKB_KEY_Prior);
}

void TestXcbHotKeyKeysyms::keysyms()
{
    QFETCH(quint32, carbonCode);
    QFETCH(quint32, keysym);
    QCOMPARE(XcbHotKeyKeysyms::keysym(carbonCode), std::optional<quint32>(keysym));
}

void TestXcbHotKeyKeysyms::accelerators_data()
{
    QTest::addColumn<QString>("accelerator");
    QTest::addColumn<std::optional<KeyCombo>>("combo");
    const std::optional<KeyCombo> none;
    auto row = [](const char* text, std::optional<KeyCombo> combo) {
        QTest::addRow("%s", text) << QString::fromLatin1(text) << combo;
    };
    row("<Alt>F4", KeyCombo(118, 2048));
    row("<Super>Left", KeyCombo(123, 256));
    row("<Primary><Alt>t", KeyCombo(17, 4096 | 2048));
    row("<Control><Alt>Delete", KeyCombo(117, 4096 | 2048));
    row("<Shift><Super>s", KeyCombo(1, 512 | 256));
    row("<Ctrl><Shift>Escape", KeyCombo(53, 4096 | 512));
    row("<Mod4>e", KeyCombo(14, 256));
    row("<Alt>space", KeyCombo(49, 2048));
    row("<Super>Page_Up", KeyCombo(116, 256));
    row("<Alt>Tab", KeyCombo(48, 2048));
    row("XF86AudioMute", KeyCombo(74, 0));
    row("<Super>A", KeyCombo(0, 256));
    row("<Super>1", KeyCombo(18, 256));
    row("Print", none);    // no Carbon code
    row("<Hyper>a", none); // a modifier hot keys cannot carry
    row("disabled", none);
    row("", none);
    row("<Super>", none);
    row("<Super", none);
    row("<Alt>NoSuchKey", none);
}

void TestXcbHotKeyKeysyms::accelerators()
{
    QFETCH(QString, accelerator);
    QFETCH(std::optional<KeyCombo>, combo);
    QCOMPARE(XcbHotKeyKeysyms::parseAccelerator(accelerator), combo);
}

void TestXcbHotKeyKeysyms::desktopBindingsAreRead()
{
    // A schema of the desktop's window-manager bindings, compiled into a private folder and
    // read with its defaults (the memory backend holds no user values).
    QTemporaryDir dir;
    QFile schema(dir.filePath(QStringLiteral("org.gnome.desktop.wm.keybindings.gschema.xml")));
    QVERIFY(schema.open(QIODevice::WriteOnly));
    schema.write(R"(<schemalist>
  <schema id="org.gnome.desktop.wm.keybindings" path="/org/gnome/desktop/wm/keybindings/">
    <key name="close" type="as"><default>['&lt;Alt&gt;F4']</default></key>
    <key name="switch-windows" type="as"><default>['&lt;Alt&gt;Tab', '&lt;Super&gt;Tab']</default></key>
    <key name="show-desktop" type="as"><default>[]</default></key>
    <key name="panel-run" type="as"><default>['Print', '&lt;Primary&gt;&lt;Alt&gt;t']</default></key>
    <key name="single" type="s"><default>'&lt;Super&gt;e'</default></key>
    <key name="number" type="i"><default>3</default></key>
  </schema>
</schemalist>
)");
    schema.close();
    QCOMPARE(QProcess::execute(QStringLiteral("glib-compile-schemas"), {dir.path()}), 0);
    qputenv("GSETTINGS_SCHEMA_DIR", dir.path().toUtf8());
    qputenv("GSETTINGS_BACKEND", "memory");
    qputenv("XDG_DATA_DIRS", dir.path().toUtf8()); // no other schemas

    const auto entries = XcbHotKeySystemCombos::read();
    QVERIFY(entries.has_value());
    QList<KeyCombo> combos;
    for (const QVariantMap& entry : *entries) {
        QCOMPARE(entry.value(QLatin1String(HotKey::HotKeyService::enabledKey)), QVariant(true));
        combos.append(KeyCombo(
            quint32(entry.value(QLatin1String(HotKey::HotKeyService::keyCodeKey)).toLongLong()),
            quint32(entry.value(QLatin1String(HotKey::HotKeyService::modifiersKey)).toLongLong())));
    }
    // Compared as a set: the order follows the schema's key list.
    std::sort(combos.begin(), combos.end(), [](const KeyCombo& a, const KeyCombo& b) {
        return std::pair(a.carbonKeyCode, a.carbonModifiers) <
               std::pair(b.carbonKeyCode, b.carbonModifiers);
    });
    const QList<KeyCombo> expected = {KeyCombo(14, 256), KeyCombo(17, 6144), KeyCombo(48, 256),
                                      KeyCombo(48, 2048), KeyCombo(118, 2048)};
    QCOMPARE(combos, expected);
}

QTEST_GUILESS_MAIN(TestXcbHotKeyKeysyms)
#include "tst_XcbHotKeyKeysyms.moc"

// SPDX-License-Identifier: MIT
#include "ListNavigator.h"

#include "hotkeys/QtKeyMapping.h"
#include "vault/ChordText.h"

#include <hotkey/ModifierFlags.h>

#include <QGuiApplication>
#include <QKeyEvent>

#include <algorithm>

namespace Tessaline {
namespace {

// The keys the navigator acts on, by the key codes the vault's keyboard tables use.
constexpr int kReturnKey = 36;
constexpr int kKeypadEnterKey = 76;
constexpr int kSlashKey = 44;
constexpr int kDownArrowKey = 125;
constexpr int kUpArrowKey = 126;

// The slash key by its place on the keyboard: xcb and Wayland report the xkb keycode as the
// native scan code, and 61 is the key left of the right Shift on evdev keyboards, whatever
// the layout prints on it and whichever modifiers are down. Without a scan code (offscreen)
// the key's own name stands in for it.
constexpr quint32 kSlashScanCode = 61;

bool isSlashKey(const QKeyEvent& event)
{
    // The keypad's "/" is a key of its own, which the navigator leaves alone.
    if (event.modifiers().testFlag(Qt::KeypadModifier))
        return false;
    if (event.nativeScanCode() != 0)
        return event.nativeScanCode() == kSlashScanCode;
    return event.key() == Qt::Key_Slash;
}

int keyCodeOf(const QKeyEvent& event)
{
    if (isSlashKey(event))
        return kSlashKey;
    switch (event.key()) {
    case Qt::Key_Return:
        return kReturnKey;
    case Qt::Key_Enter:
        return kKeypadEnterKey;
    case Qt::Key_Down:
        return kDownArrowKey;
    case Qt::Key_Up:
        return kUpArrowKey;
    default:
        return -1;
    }
}

// Ctrl+K, the chord that starts key lookup.
bool isLookupKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    return event.key() == Qt::Key_K && modifiers == Qt::ControlModifier;
}

} // namespace

ListNavigator::ListNavigator(QObject* parent) : QObject(parent) {}

ListNavigator::~ListNavigator()
{
    if (m_started && qApp)
        qApp->removeEventFilter(this);
}

void ListNavigator::setSelection(int selection)
{
    if (selection < 0)
        selection = kNoSelection;
    if (m_selection == selection)
        return;
    m_selection = selection;
    emit selectionChanged();
}

void ListNavigator::syncCount(int count)
{
    if (m_itemCount != count) {
        m_itemCount = count;
        emit itemCountChanged();
    }
    if (count == 0)
        setSelection(kNoSelection);
    else if (m_selection != kNoSelection && m_selection >= count)
        setSelection(count - 1);
}

void ListNavigator::start()
{
    if (m_started || !qApp)
        return;
    qApp->installEventFilter(this);
    m_started = true;
}

void ListNavigator::stop()
{
    if (m_started && qApp)
        qApp->removeEventFilter(this);
    m_started = false;
    setSelection(kNoSelection);
}

void ListNavigator::setCapturing(bool capturing)
{
    if (m_capturing == capturing)
        return;
    m_capturing = capturing;
    emit capturingChanged();
}

bool ListNavigator::eventFilter(QObject* watched, QEvent* event)
{
    // While capturing, the panel's shortcuts (Escape closes it) and the text field's editing
    // keys must not see the chord: accepting the shortcut override keeps every shortcut from
    // firing, and the key press itself is consumed below.
    if (event->type() == QEvent::ShortcutOverride && m_capturing && m_panel &&
        QGuiApplication::focusWindow() == m_panel) {
        event->accept();
        return true;
    }
    // Key presses reach the focused window first; acting there keeps the event from the
    // search field when it is consumed.
    if (event->type() != QEvent::KeyPress || watched != QGuiApplication::focusWindow())
        return false;
    const auto& keyEvent = *static_cast<QKeyEvent*>(event);
    if (m_panel && QGuiApplication::focusWindow() == m_panel) {
        if (m_capturing) {
            capture(keyEvent);
            return true;
        }
        if (isLookupKey(keyEvent)) {
            emit lookupRequested();
            return true;
        }
    }
    if (m_itemCount < 1)
        return false;
    if (!m_panel || QGuiApplication::focusWindow() != m_panel)
        return false;
    const int keyCode = keyCodeOf(keyEvent);
    const Qt::KeyboardModifiers modifiers = keyEvent.modifiers() & ~Qt::KeypadModifier;
    if ((keyCode == kReturnKey || keyCode == kKeypadEnterKey) && modifiers == Qt::ControlModifier)
        return run();
    return handle(keyCode);
}

bool ListNavigator::run()
{
    if (m_selection == kNoSelection || m_selection >= m_itemCount || !m_onRun)
        return false;
    m_onRun(m_selection);
    return true;
}

void ListNavigator::capture(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_Escape && modifiers == Qt::NoModifier) {
        emit lookupCancelled();
        return;
    }
    // A modifier alone is half a chord: wait for its key. The key is read as the hotkey
    // recorder reads it, by its place when Qt does not know it.
    if (QtKeyMapping::isModifierKey(event.key()))
        return;
    const std::optional<HotkeyKeyEvent> key =
        QtKeyMapping::keyEvent(event.key(), event.modifiers(), event.nativeScanCode());
    if (!key)
        return;
    const quint32 carbonModifiers = HotKey::ModifierFlags(key->modifierFlags).carbonFlags();
    if (const std::optional<QString> chord = ChordText::fromKeyCode(key->keyCode, carbonModifiers))
        emit chordPressed(*chord);
}

bool ListNavigator::handle(int keyCode)
{
    switch (keyCode) {
    case kReturnKey:
    case kKeypadEnterKey:
        if (m_selection == kNoSelection || m_selection >= m_itemCount)
            return false;
        if (m_onActivate)
            m_onActivate(m_selection);
        emit activated(m_selection);
        return true;
    case kSlashKey:
        ++m_searchFocusRequest;
        emit searchFocusRequestChanged();
        return true;
    case kDownArrowKey:
        setSelection(
            std::min(m_itemCount - 1, (m_selection == kNoSelection ? -1 : m_selection) + 1));
        return true;
    case kUpArrowKey:
        setSelection(std::max((m_selection == kNoSelection ? 0 : m_selection) - 1, 0));
        return true;
    default:
        return false;
    }
}

} // namespace Tessaline

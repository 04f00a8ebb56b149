// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

#include <functional>

class QKeyEvent;

namespace Tessaline {

/// Keyboard control of the cheat-sheet list while the HUD panel has focus: the arrow keys move
/// the selection, Return copies the selected row's chord, Ctrl+Return runs the selected row in
/// its app, "/" asks for the search field, and Ctrl+K asks for key lookup. While `capturing`,
/// every key press in the panel is taken for key lookup instead and reaches nothing else:
/// Escape ends it, any other chord is reported.
/// Watches key presses application-wide and consumes only those it acts on.
class ListNavigator : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("ListNavigator is created with each HUD panel")
    /// Index into the HUD's flat list of rows; -1 when nothing is selected.
    Q_PROPERTY(int selection READ selection WRITE setSelection NOTIFY selectionChanged)
    /// Grows by one each time the search field should take focus.
    Q_PROPERTY(int searchFocusRequest READ searchFocusRequest NOTIFY searchFocusRequestChanged)
    Q_PROPERTY(int itemCount READ itemCount NOTIFY itemCountChanged)
    /// True while key presses are captured for key lookup.
    Q_PROPERTY(bool capturing READ capturing WRITE setCapturing NOTIFY capturingChanged)

public:
    static constexpr int kNoSelection = -1;

    explicit ListNavigator(QObject* parent = nullptr);
    ~ListNavigator() override;

    int selection() const { return m_selection; }
    void setSelection(int selection);
    int searchFocusRequest() const { return m_searchFocusRequest; }
    int itemCount() const { return m_itemCount; }
    bool capturing() const { return m_capturing; }
    void setCapturing(bool capturing);

    /// What Return does with the selected index.
    void setOnActivate(std::function<void(int)> onActivate)
    {
        m_onActivate = std::move(onActivate);
    }
    /// What Ctrl+Return does with the selected index.
    void setOnRun(std::function<void(int)> onRun) { m_onRun = std::move(onRun); }
    /// The window whose focus enables the navigator (the HUD panel).
    void setPanel(QWindow* panel) { m_panel = panel; }

    Q_INVOKABLE
    void syncCount(int count);
    Q_INVOKABLE
    void start();
    Q_INVOKABLE
    void stop();

signals:
    void selectionChanged();
    void searchFocusRequestChanged();
    void itemCountChanged();
    /// Return on a selected row; the view copies that row's chord.
    void activated(int index);
    void capturingChanged();
    /// Ctrl+K: the user wants to know what a key does.
    void lookupRequested();
    /// A chord pressed while capturing, in the vault's stored form ("⌃ ⇧ S").
    void chordPressed(const QString& chord);
    /// Escape while capturing.
    void lookupCancelled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// True when the key press was used and must not reach anything else.
    bool handle(int carbonKeyCode);
    /// Ctrl+Return: true when a selected row was run.
    bool run();
    /// A key press while capturing: reported as a chord, or as the end of key lookup.
    void capture(const QKeyEvent& event);

    int m_selection = kNoSelection;
    int m_searchFocusRequest = 0;
    int m_itemCount = 0;
    std::function<void(int)> m_onActivate;
    std::function<void(int)> m_onRun;
    QPointer<QWindow> m_panel;
    bool m_started = false;
    bool m_capturing = false;
};

} // namespace Tessaline

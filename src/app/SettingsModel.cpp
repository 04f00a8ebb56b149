// SPDX-License-Identifier: MIT
#include "SettingsModel.h"

#include "coach/CoachTipController.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/HotkeyRecorder.h"
#include "platform/AccessibilityTrust.h"
#include "vault/VaultStore.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

namespace Tessaline {
namespace {

const QString kJsonFilter = QStringLiteral("JSON files (*.json)");

} // namespace

SettingsModel::SettingsModel(VaultStore& store, HotkeyManager* hotkeyManager,
                             KeyNamePreference& keyNames, AccessibilityTrust& trust,
                             QObject* parent)
    : QObject(parent), m_store(&store), m_hotkeyManager(hotkeyManager), m_keyNames(keyNames),
      m_trust(trust)
{
    if (hotkeyManager)
        m_recorder = new HotkeyRecorder(*hotkeyManager, this);
    connect(&store, &VaultStore::lastErrorChanged, this, &SettingsModel::lastErrorChanged);
    m_accessibilityEnabled = m_trust.isTrusted();
    m_startAtLogin = m_autostart.isEnabled();
}

SettingsModel::~SettingsModel() = default;

QString SettingsModel::dataFilePath() const
{
    return m_store ? m_store->dataFilePath() : QString();
}

QString SettingsModel::coachTipsNote() const
{
    return m_coachTips ? m_coachTips->unavailableReason() : QString();
}

void SettingsModel::watchCoachTips(CoachTipController& coachTips)
{
    m_coachTips = &coachTips;
    connect(&coachTips, &CoachTipController::unavailableReasonChanged, this,
            &SettingsModel::coachTipsNoteChanged);
    emit coachTipsNoteChanged();
}

QString SettingsModel::lastError() const
{
    return m_store ? m_store->lastErrorText() : QString();
}

void SettingsModel::refreshAccessibility()
{
    const bool enabled = m_trust.isTrusted();
    if (enabled == m_accessibilityEnabled)
        return;
    m_accessibilityEnabled = enabled;
    emit accessibilityChanged();
}

void SettingsModel::requestAccessibility()
{
    m_trust.requestTrust();
    refreshAccessibility();
}

void SettingsModel::showFile()
{
    if (!m_store)
        return;
    const QString path = m_store->dataFilePath();
    // File managers that implement the freedesktop file-manager interface select the file;
    // otherwise its folder is opened.
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 2000);
    if (reply.type() != QDBusMessage::ReplyMessage)
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

void SettingsModel::importJson()
{
    if (!m_store)
        return;
    const QString file = QFileDialog::getOpenFileName(nullptr, QStringLiteral("Import JSON"),
                                                      QDir::homePath(), kJsonFilter);
    if (!file.isEmpty())
        m_store->importData(file);
}

void SettingsModel::exportJson()
{
    if (!m_store)
        return;
    const QString file = QFileDialog::getSaveFileName(
        nullptr, QStringLiteral("Export JSON"),
        QDir::home().filePath(QStringLiteral("keybinds.json")), kJsonFilter);
    if (!file.isEmpty())
        m_store->exportData(file);
}

void SettingsModel::resetToSeed()
{
    if (m_store)
        m_store->resetToSeed();
}

void SettingsModel::refreshStartAtLogin()
{
    const bool enabled = m_autostart.isEnabled();
    if (enabled == m_startAtLogin)
        return;
    m_startAtLogin = enabled;
    emit startAtLoginChanged();
}

void SettingsModel::setStartAtLogin(bool enabled)
{
    const Expected<void> written = m_autostart.setEnabled(enabled);
    m_startAtLogin = m_autostart.isEnabled();
    m_startAtLoginMessage = written ? QString() : written.error();
    emit startAtLoginChanged();
}

} // namespace Tessaline

// SPDX-License-Identifier: MIT
#include "platform/qt/MessageBoxAlertPresenter.h"

#include <QMessageBox>
#include <QPushButton>

namespace Tessaline {

int MessageBoxAlertPresenter::runModal(const QString& message, const QString& informativeText,
                                       const QStringList& buttons)
{
    QMessageBox box;
    box.setWindowTitle(QStringLiteral("Tessaline"));
    box.setIcon(QMessageBox::Information);
    box.setText(message);
    box.setInformativeText(informativeText);
    box.setWindowModality(Qt::ApplicationModal);
    QList<QAbstractButton*> added;
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        // The first button is the default; a "Cancel" answers Escape.
        const bool isCancel = buttons.at(i) == QStringLiteral("Cancel");
        QPushButton* button = box.addButton(buttons.at(i), isCancel ? QMessageBox::RejectRole
                                                                    : QMessageBox::AcceptRole);
        if (i == 0)
            box.setDefaultButton(button);
        if (isCancel)
            box.setEscapeButton(button);
        added.append(button);
    }
    box.exec();
    const qsizetype chosen = added.indexOf(box.clickedButton());
    return chosen < 0 ? AlertPresenter::kFirstButton + static_cast<int>(buttons.size())
                      : AlertPresenter::kFirstButton + static_cast<int>(chosen);
}

} // namespace Tessaline

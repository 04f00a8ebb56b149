// SPDX-License-Identifier: MIT
// A window with one field that takes typed keys, and pastes the clipboard on Ctrl+V, but offers
// assistive tools no editable text: text can reach it only as keys. After every change its
// contents are written to the file named on the command line, for the test to read. A chord
// with Control other than Ctrl+V is written as "[Ctrl+<key>]".
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QKeyEvent>
#include <QKeySequence>
#include <QPainter>
#include <QWidget>

namespace {

class PlainKeyField final : public QWidget
{
public:
    explicit PlainKeyField(QString outputPath) : m_outputPath(std::move(outputPath))
    {
        setFocusPolicy(Qt::StrongFocus);
        setAccessibleName(QStringLiteral("Plain key field"));
        save();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        const int key = event->key();
        if (key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt ||
            key == Qt::Key_Meta)
            return;
        if (event->matches(QKeySequence::Paste))
            m_text += QGuiApplication::clipboard()->text();
        else if (event->modifiers() & Qt::ControlModifier)
            m_text += QStringLiteral("[Ctrl+%1]").arg(QKeySequence(key).toString());
        else if (key == Qt::Key_Return || key == Qt::Key_Enter)
            m_text += QLatin1Char('\n');
        else
            m_text += event->text();
        save();
        update();
    }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), hasFocus() ? Qt::white : Qt::lightGray);
        painter.drawText(rect().adjusted(6, 6, -6, -6), Qt::TextWordWrap, m_text);
    }

private:
    void save() const
    {
        QFile file(m_outputPath);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(m_text.toUtf8());
    }

    QString m_outputPath;
    QString m_text;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2)
        return 2;
    PlainKeyField field(QString::fromLocal8Bit(argv[1]));
    field.setWindowTitle(QStringLiteral("Plain Key Field"));
    field.resize(420, 200);
    field.show();
    field.setFocus();
    return app.exec();
}

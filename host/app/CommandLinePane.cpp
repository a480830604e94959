// The command-line pane of the main window: the output of the host and the typed commands,
// with an input line that recalls earlier commands by Up and Down.
#include "CommandLinePane.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <QVBoxLayout>

namespace cadhost {

CommandInput::CommandInput(QWidget* parent) : QLineEdit(parent) {}

void CommandInput::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
        if (m_recall > 0)
            setText(m_history.at(--m_recall));
        return;
    case Qt::Key_Down:
        if (m_recall < m_history.size()) {
            ++m_recall;
            setText(m_recall < m_history.size() ? m_history.at(m_recall) : QString());
        }
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter: {
        const QString command = text().trimmed();
        clear();
        if (!command.isEmpty() && (m_history.isEmpty() || m_history.last() != command))
            m_history.append(command);
        m_recall = m_history.size();
        emit commandEntered(command);
        return;
    }
    default:
        QLineEdit::keyPressEvent(event);
    }
}

CommandLinePane::CommandLinePane(QWidget* parent)
    : QWidget(parent), m_output(new QPlainTextEdit(this)), m_input(new CommandInput(this)) {
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_output->setReadOnly(true);
    m_output->setFont(fixed);
    m_output->setMaximumBlockCount(5000);
    m_input->setFont(fixed);
    m_input->setPlaceholderText(tr("Command"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_output);
    layout->addWidget(m_input);
}

void CommandLinePane::appendOutput(const QString& text) {
    QTextCursor cursor = m_output->textCursor();
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text);
    m_output->setTextCursor(cursor);
    m_output->verticalScrollBar()->setValue(m_output->verticalScrollBar()->maximum());
}

} // namespace cadhost

// The command-line pane of the main window: the output of the host and the typed commands,
// with an input line that recalls earlier commands by Up and Down.
#pragma once
#include <QLineEdit>
#include <QStringList>
#include <QWidget>

class QPlainTextEdit;

namespace cadhost {

// An input line with a history: Up recalls the previous command, Down the next one (and at the
// end an empty line again). Return emits commandEntered with the trimmed text, which joins the
// history unless it is empty or repeats the last entry.
class CommandInput : public QLineEdit {
    Q_OBJECT
public:
    explicit CommandInput(QWidget* parent = nullptr);
    const QStringList& history() const { return m_history; }

signals:
    void commandEntered(const QString& command);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QStringList m_history;
    int m_recall = 0; // index into m_history; == size(): the fresh line
};

class CommandLinePane : public QWidget {
    Q_OBJECT
public:
    explicit CommandLinePane(QWidget* parent = nullptr);
    // Appends host output; text may hold several lines or end within one.
    void appendOutput(const QString& text);
    CommandInput* input() const { return m_input; }

private:
    QPlainTextEdit* m_output;
    CommandInput* m_input;
};

} // namespace cadhost

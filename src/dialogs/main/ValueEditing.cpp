// ValueEditing: the description and value fields of the current record, and their focus rules.
#include "ValueEditing.h"

#include "vars/QtText.h"

#include <QFocusEvent>
#include <QLineEdit>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextLayout>

ValueEditing::ValueEditing(VarListView& list, QPlainTextEdit& description, QLineEdit& value,
                           cSysVar*& currentVar, const std::int32_t& visibleLines, QObject* parent)
    : QObject(parent), m_list(list), m_description(description), m_value(value), m_currentVar(currentVar),
      m_visibleLines(visibleLines) {
    m_description.setReadOnly(true);
    m_description.installEventFilter(this);
    m_value.installEventFilter(this);
}

void ValueEditing::showVariable(cSysVar* record) {
    m_currentVar = record;
    if (record) {
        m_value.setReadOnly(record->isReadOnly());
        std::string text;
        record->editText(text);
        m_value.setText(qs(text));
        m_description.setPlainText(qs(record->description));
        updateScrollBar();
        return;
    }
    m_list.setFocus(Qt::OtherFocusReason);
    m_value.clear();
    m_description.clear();
    updateScrollBar();
    m_value.setReadOnly(true);
}

void ValueEditing::applyValueEdit() {
    if (m_value.isReadOnly())
        return;
    const std::string text = stdText(m_value.text());
    cSysVar* record = m_currentVar;
    if (!record)
        return;
    if (VarListModel* rows = m_list.rowModel()) {
        const int row = rows->rowOf(record);
        if (row >= 0 && record->applyEditText(text) && rows->columnCount() > 2)
            rows->setData(rows->index(row, 2), qs(record->newText));
    }
    m_value.setModified(false);
    m_list.setFocus(Qt::OtherFocusReason);
}

void ValueEditing::cancel() {
    m_currentVar = nullptr;
    m_list.setFocus(Qt::OtherFocusReason);
}

int ValueEditing::descriptionLineCount() const {
    auto* layout = qobject_cast<QPlainTextDocumentLayout*>(m_description.document()->documentLayout());
    int lines = 0;
    for (QTextBlock block = m_description.document()->begin(); block.isValid(); block = block.next()) {
        if (layout)
            layout->ensureBlockLayout(block);
        const QTextLayout* text = block.layout();
        lines += text && text->lineCount() > 0 ? text->lineCount() : 1;
    }
    return lines;
}

void ValueEditing::updateScrollBar() {
    m_description.setVerticalScrollBarPolicy(
        descriptionLineCount() > m_visibleLines ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
}

bool ValueEditing::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_description && event->type() == QEvent::FocusIn) {
        m_value.setFocus(Qt::OtherFocusReason);
    } else if (watched == &m_value && event->type() == QEvent::FocusIn) {
        if (m_value.isReadOnly())
            m_list.setFocus(Qt::OtherFocusReason);
        else // posted: the focus change that brought us here must be over first
            QMetaObject::invokeMethod(&m_value, &QLineEdit::selectAll, Qt::QueuedConnection);
    } else if (watched == &m_value && event->type() == QEvent::FocusOut) {
        // A menu opening takes the keyboard for a moment without leaving the field.
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason)
            applyValueEdit();
    }
    return QObject::eventFilter(watched, event);
}

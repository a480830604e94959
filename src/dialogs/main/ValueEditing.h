// ValueEditing: the description and value fields of the current record, and their focus rules.
#pragma once
#include "VarListView.h"

#include <QObject>

#include <cstdint>

class QLineEdit;
class QPlainTextEdit;

// Brings one record into the two fields and takes typed text back into it. The description never
// keeps the focus; a read-only value field hands it on to the list; a writable one selects all its
// text once the event that gave it the focus is over; leaving the value field applies it.
// currentVar and visibleLines are the dialog's; the widgets must outlive this object.
class ValueEditing : public QObject {
    Q_OBJECT
public:
    ValueEditing(VarListView& list, QPlainTextEdit& description, QLineEdit& value, cSysVar*& currentVar,
                 const std::int32_t& visibleLines, QObject* parent = nullptr);

    // Makes record current. With a record the fields show its value and description and the
    // focus stays where it is; with null the list gets the focus first (so leaving the value
    // field applies nothing), then both fields are emptied and the value field is read-only.
    void showVariable(cSysVar* record);
    // Hands the value field's text to the current record and writes the record's new text into
    // its row. Nothing for a read-only field or with no record; a text the record refuses
    // changes nothing. The list gets the focus at the end.
    void applyValueEdit();
    // Escape: no record is current any more, the fields keep what they show, the list gets the
    // focus, and nothing is applied.
    void cancel();
    // Shows the description's scroll bar when it holds more lines than visibleLines.
    void updateScrollBar();
    // The lines the description holds, wrapped lines counted as the field shows them.
    int descriptionLineCount() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    VarListView& m_list;
    QPlainTextEdit& m_description;
    QLineEdit& m_value;
    cSysVar*& m_currentVar;
    const std::int32_t& m_visibleLines;
};

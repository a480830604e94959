// cDlgConfig: the configuration dialog for the two paths of the system, the AVL file and the editor.
#pragma once
#include "TemplateDialog.h"

#include <cstdint>
#include <string>

class CEditEx;
class QLabel;
class QPushButton;
class DocumentState;
struct EditKeyNotification;

// Built from template 1118. Works on copies of the AVL path and the editor path and stores them
// in the context only on OK: a path the file system knows is stored at once, and when one is
// missing the user is asked whether to take both all the same. OK ends the dialog after either
// answer. The rectangle is stored at every end.
class cDlgConfig : public TemplateDialog {
    Q_OBJECT
public:
    static constexpr int kTemplateId = 1118;
    static constexpr int kIdOk = 1014;
    static constexpr int kIdCancel = 1013;
    static constexpr int kIdHelp = 3;
    static constexpr int kIdAvlLabel = 1008;
    static constexpr int kIdAvlPath = 1010;
    static constexpr int kIdAvlBrowse = 1000;
    static constexpr int kIdEditorLabel = 1009;
    static constexpr int kIdEditorPath = 1011;
    static constexpr int kIdEditorBrowse = 1001;

    // Copies the two paths from context, which must outlive the dialog.
    explicit cDlgConfig(DocumentState& context, QWidget* parent = nullptr);

    // The wider label text in pixels, where the fields start; 0 until the start measured it.
    std::int32_t labelWidth() const { return m_labelWidth; }

    // The file dialogs of the two browse buttons: the choice becomes the working path and the
    // field's text; a cancel changes nothing.
    void OnBrowseAvl();
    void OnBrowseEditor();

public slots:
    void accept() override; // the OK step (button 1014 and Enter)

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnInitDialog() override;
    void LayoutControls() override;
    void OnPathKey(const EditKeyNotification& notification);
    // The working path that field edits.
    std::string& workingPathOf(const CEditEx* field);
    void browse(CEditEx* field, const std::string& filterName, const std::string& extension);

    std::int32_t m_labelWidth = 0;
    std::string m_avlPath; // the working paths
    std::string m_editorPath;
    DocumentState& m_context;
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_help = nullptr;
    QPushButton* m_avlBrowse = nullptr;
    QPushButton* m_editorBrowse = nullptr;
    QLabel* m_avlLabel = nullptr;
    QLabel* m_editorLabel = nullptr;
    CEditEx* m_avlField = nullptr;
    CEditEx* m_editorField = nullptr;
};

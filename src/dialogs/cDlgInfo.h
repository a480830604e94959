// cDlgInfo: the info dialog with the program's title, version, command and copyright lines.
#pragma once
#include "TemplateDialog.h"

#include <string>

class QLabel;
class QPushButton;

// Built from template 1097. The four texts are measured at start; when the longest is wider
// than 80 pixels all four get its width and the dialog grows to the right, the OK button staying
// centred.
class cDlgInfo : public TemplateDialog {
    Q_OBJECT
public:
    static constexpr int kTemplateId = 1097;
    static constexpr int kIdOk = 1;
    static constexpr int kIdTitle = 1201;
    static constexpr int kIdVersion = 1202;
    static constexpr int kIdCommand = 1203;
    static constexpr int kIdCopyright = 1200;
    static constexpr int kIdPicture = 1204;
    // Texts no wider than this keep the template's layout.
    static constexpr int kNarrowTextWidth = 80;
    static constexpr int kPictureGap = 4; // pixels between the picture and the widened texts
    static constexpr int kBitmapId = 1098;

    cDlgInfo(std::string titleLine, std::string versionLine, std::string commandLine,
             std::string copyrightLine, QWidget* parent = nullptr);

    // The four strings as the main dialog's Info command gives them.
    static std::string versionLineText();
    static std::string commandLineText();
    static std::string copyrightLineText();

private:
    void OnInitDialog() override;

    std::string m_titleLine;
    std::string m_versionLine;
    std::string m_commandLine;
    std::string m_copyrightLine;

    QPushButton* m_ok = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_version = nullptr;
    QLabel* m_command = nullptr;
    QLabel* m_copyright = nullptr;
};

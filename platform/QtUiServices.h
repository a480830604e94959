// The UI services for people: Qt message boxes, file dialogs, program start and a help viewer.
#pragma once
#include "UiServices.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <string>

namespace kova {

// Turns the module's filter "Desc (*.ext)|*.ext|All (*.*)|*.*||" into Qt's form
// "Desc (*.ext);;All (*)". A trailing "(...)" in a description is replaced by the entry's
// patterns; "*.*" becomes "*", which on this platform also matches names without a dot. Patterns
// separated by ";" are given to Qt separated by blanks. An empty filter gives an empty text.
QString qtNameFilters(const std::string& filter);

class QtUiServices : public UiServices {
public:
    // parent (the host's main window) owns the boxes and dialogs that no modal window asks for;
    // may be null and set later.
    explicit QtUiServices(QWidget* parent = nullptr);
    void setParentWidget(QWidget* parent) { m_parent = parent; }

    BoxAnswer messageBox(BoxKind kind, const std::string& title, const std::string& text,
                         BoxButtons buttons) override;
    void alert(const std::string& text) override;
    std::optional<std::string> fileDialog(FileDialogKind kind, const std::string& filter,
                                          const std::string& initialFile,
                                          const std::string& defaultExtension) override;
    int startProgram(const std::string& commandLine) override;
    // True when a QApplication runs: the built-in viewer can always show HTML then.
    bool loadHelpEngine() override;
    // Opens file#topic in the desktop's browser, or in a built-in viewer window when the desktop
    // has none. 0 when the file does not exist or nothing could show it.
    int showHelp(const std::string& file, const std::string& topic) override;
    int runModal(QDialog& dialog) override;
    bool isScripted() const override { return false; }

    // The host's name, the title of its alert boxes.
    static constexpr const char* kHostTitle = "cadhost";

    // The window a box or file dialog belongs to: the modal dialog that is open, else the parent.
    QWidget* owner() const;

private:
    int showInViewer(const QString& file, const QString& topic);

    QPointer<QWidget> m_parent;
};

} // namespace kova

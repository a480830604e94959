// The main window of cadhost for people: drawing tabs, the variables and a view of the current
// drawing, the command-line pane, and the File menu.
#pragma once
#include "HostCommands.h"

#include <QMainWindow>
#include <QString>

#include <map>
#include <memory>
#include <vector>

class AcApDocument;
class QSplitter;
class QTabBar;
class QTreeWidget;

namespace cadhost {

namespace dxf {
class Drawing;
}
class CommandLinePane;
class DrawingView;
class HostSession;
class ModelSpaceScene;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // settingsFile keeps the window's place (QSettings, ini format).
    MainWindow(HostSession& host, const QString& settingsFile, QWidget* parent = nullptr);

    // Output of the host (acutPrintf, notes) for the command-line pane.
    void appendOutput(const QString& text);
    // Rebuilds the tabs from the host's documents and shows the current drawing's variables and
    // model space.
    void refresh();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void runCommandLine(const QString& line);
    void runWords(const std::vector<std::string>& words);
    void tabChosen(int index);
    void openDrawing();
    void saveDrawingAs();
    void loadApplication();
    void fillVariables();
    void showDrawing();

    HostSession& m_host;
    HostCommands m_commands;
    QString m_settingsFile;
    QTabBar* m_tabs;
    QTreeWidget* m_variables;
    DrawingView* m_view;
    QSplitter* m_splitter;
    CommandLinePane* m_commandLine;
    std::vector<AcApDocument*> m_tabDocs;
    std::map<AcApDocument*, QString> m_names; // drawing names, learnt while each is current
    // Scenes of the open drawings, built when each is first shown.
    std::map<const dxf::Drawing*, std::shared_ptr<const ModelSpaceScene>> m_scenes;
    bool m_refreshing = false;
};

} // namespace cadhost

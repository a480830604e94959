// The main window of cadhost for people: drawing tabs, the variables and a view of the current
// drawing, the command-line pane, and the File menu.
#include "MainWindow.h"

#include "acdocman.h"
#include "acedads.h"
#include "CommandLinePane.h"
#include "CommandWords.h"
#include "DrawingView.h"
#include "hostsession.h"
#include "ModelSpaceScene.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenuBar>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace cadhost {

namespace {
const char* kDrawingFilter = "Drawings (*.dwg);;All files (*)";
const char* kModuleFilter = "Applications (*.so);;All files (*)";
// The variable table's share of the width before the user moves the splitter.
constexpr int kVariablesWidth = 340, kViewWidth = 660;
constexpr int kCommandLineHeight = 170;
} // namespace

MainWindow::MainWindow(HostSession& host, const QString& settingsFile, QWidget* parent)
    : QMainWindow(parent), m_host(host),
      m_commands(host,
                 [this](const std::string& text) { appendOutput(QString::fromStdString(text) + "\n"); }),
      m_settingsFile(settingsFile), m_tabs(new QTabBar), m_variables(new QTreeWidget),
      m_view(new DrawingView), m_splitter(new QSplitter(Qt::Horizontal)), m_commandLine(new CommandLinePane) {
    setWindowTitle("cadhost");
    setWindowIcon(QIcon::fromTheme("cadhost"));

    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_tabs->setDocumentMode(true);
    m_tabs->setExpanding(false);
    m_variables->setColumnCount(2);
    m_variables->setHeaderLabels({tr("Variable"), tr("Value")});
    m_variables->setRootIsDecorated(false);
    m_variables->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_splitter->setObjectName("variablesAndView");
    m_splitter->addWidget(m_variables);
    m_splitter->addWidget(m_view);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setSizes({kVariablesWidth, kViewWidth});
    layout->addWidget(m_tabs);
    layout->addWidget(m_splitter);
    setCentralWidget(central);

    auto* dock = new QDockWidget(tr("Command line"), this);
    dock->setObjectName("commandLine");
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    dock->setWidget(m_commandLine);
    addDockWidget(Qt::BottomDockWidgetArea, dock);

    buildMenus();
    statusBar();

    connect(m_tabs, &QTabBar::currentChanged, this, &MainWindow::tabChosen);
    connect(m_commandLine->input(), &CommandInput::commandEntered, this, &MainWindow::runCommandLine);

    QSettings settings(m_settingsFile, QSettings::IniFormat);
    if (!restoreGeometry(settings.value("MainWindow/geometry").toByteArray()))
        resize(1000, 700);
    // At the first start the drawing gets most of the height.
    if (!restoreState(settings.value("MainWindow/state").toByteArray()))
        resizeDocks({dock}, {kCommandLineHeight}, Qt::Vertical);
    m_splitter->restoreState(settings.value("MainWindow/splitter").toByteArray());
    m_commandLine->input()->setFocus();
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&New"), QKeySequence::New, this, [this] { runWords({"NEW"}); });
    file->addAction(tr("&Open..."), QKeySequence::Open, this, &MainWindow::openDrawing);
    file->addAction(tr("&Save"), QKeySequence::Save, this, [this] { runWords({"SAVE"}); });
    file->addAction(tr("Save &As..."), QKeySequence::SaveAs, this, &MainWindow::saveDrawingAs);
    file->addAction(tr("&Close"), QKeySequence::Close, this, [this] { runWords({"CLOSE"}); });
    file->addSeparator();
    file->addAction(tr("&Load Application..."), this, &MainWindow::loadApplication);
    file->addSeparator();
    file->addAction(tr("E&xit"), QKeySequence::Quit, this, &QWidget::close);
}

void MainWindow::appendOutput(const QString& text) {
    m_commandLine->appendOutput(text);
}

void MainWindow::runCommandLine(const QString& line) {
    appendOutput("Command: " + line + "\n");
    std::vector<std::string> words;
    std::string error;
    if (!splitWords(line.toStdString(), words, error)) {
        appendOutput(QString::fromStdString(error) + "\n");
        return;
    }
    runWords(words);
}

void MainWindow::runWords(const std::vector<std::string>& words) {
    const CommandOutcome outcome = m_commands.execute(words);
    if (outcome.status != CommandStatus::Done) {
        appendOutput(QString::fromStdString(outcome.message) + "\n");
        statusBar()->showMessage(QString::fromStdString(outcome.message), 5000);
    }
    refresh();
}

void MainWindow::openDrawing() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Open drawing"), {}, kDrawingFilter);
    if (!path.isEmpty())
        runWords({"OPEN", path.toStdString()});
}

void MainWindow::saveDrawingAs() {
    if (!m_host.currentDocument())
        return;
    const QString path = QFileDialog::getSaveFileName(this, tr("Save drawing as"), {}, kDrawingFilter);
    if (!path.isEmpty())
        runWords({"SAVE", path.toStdString()});
}

void MainWindow::loadApplication() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Load application"), {}, kModuleFilter);
    if (!path.isEmpty())
        runWords({"APPLOAD", path.toStdString()});
}

void MainWindow::refresh() {
    m_refreshing = true;
    AcApDocument* current = m_host.currentDocument();
    if (current) {
        std::string name;
        if (m_host.variableText("DWGNAME", name)) {
            const std::string prefix = "DWGNAME = ";
            if (upperCase(name.substr(0, prefix.size())) == prefix)
                name = name.substr(prefix.size());
            if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
                name = name.substr(1, name.size() - 2);
            m_names[current] = QString::fromStdString(name);
        }
    }
    m_tabDocs = m_host.documents();
    while (m_tabs->count() > 0)
        m_tabs->removeTab(0);
    for (size_t i = 0; i < m_tabDocs.size(); ++i) {
        AcApDocument* doc = m_tabDocs[i];
        QString label = m_names.count(doc) ? m_names[doc] : QString();
        if (label.isEmpty())
            label = doc->fileName() && *doc->fileName() ? QFileInfo(doc->fileName()).fileName()
                                                        : tr("Drawing %1").arg(i + 1);
        m_tabs->addTab(label);
        m_tabs->setTabToolTip(int(i), QString::fromUtf8(doc->fileName()));
        if (doc == current)
            m_tabs->setCurrentIndex(int(i));
    }
    m_refreshing = false;
    fillVariables();
    showDrawing();
}

void MainWindow::showDrawing() {
    // Scenes of closed drawings go, so that a new drawing at the same address gets its own.
    std::map<const dxf::Drawing*, std::shared_ptr<const ModelSpaceScene>> open;
    for (AcApDocument* doc : m_tabDocs)
        if (const dxf::Drawing* drawing = ModelSpaceScene::drawingOf(doc); drawing && m_scenes.count(drawing))
            open[drawing] = m_scenes[drawing];
    m_scenes = std::move(open);
    const dxf::Drawing* current = ModelSpaceScene::drawingOf(m_host.currentDocument());
    if (!current) {
        m_view->setScene(nullptr);
        return;
    }
    std::shared_ptr<const ModelSpaceScene>& scene = m_scenes[current];
    if (!scene) {
        scene = std::make_shared<const ModelSpaceScene>(ModelSpaceScene::build(*current));
        QStringList left;
        if (scene->skipped() > 0)
            left << tr("entities with values it cannot read (%1)").arg(scene->skipped());
        if (scene->isTruncated())
            left << tr("block references nested too deeply or too many");
        if (!left.isEmpty())
            statusBar()->showMessage(tr("The view leaves out ") + left.join(tr(" and ")), 10000);
    }
    m_view->setScene(scene);
}

void MainWindow::tabChosen(int index) {
    if (m_refreshing || index < 0 || index >= int(m_tabDocs.size()))
        return;
    if (m_tabDocs[size_t(index)] == m_host.currentDocument())
        return;
    if (HostResult r = m_host.activateDocument(m_tabDocs[size_t(index)]); !r)
        appendOutput(QString::fromStdString(r.message) + "\n");
    refresh();
}

void MainWindow::fillVariables() {
    m_variables->clear();
    if (!m_host.currentDocument())
        return;
    resbuf* names = nullptr;
    if (acedGetSysvarList("*", &names) != RTNORM)
        return;
    for (resbuf* rb = names; rb; rb = rb->rbnext) {
        if (rb->restype != RTSTR || !rb->resval.rstring)
            continue;
        std::string text;
        if (!m_host.variableText(rb->resval.rstring, text))
            continue;
        const std::string prefix = upperCase(rb->resval.rstring) + " = ";
        if (upperCase(text.substr(0, prefix.size())) == prefix)
            text = text.substr(prefix.size());
        new QTreeWidgetItem(m_variables,
                            {QString::fromUtf8(rb->resval.rstring), QString::fromStdString(text)});
    }
    acutRelRb(names);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    QSettings settings(m_settingsFile, QSettings::IniFormat);
    settings.setValue("MainWindow/geometry", saveGeometry());
    settings.setValue("MainWindow/state", saveState());
    settings.setValue("MainWindow/splitter", m_splitter->saveState());
    event->accept();
}

} // namespace cadhost

// Shared set-up of the dialog tests: in-process host, scripted user, a context with a small list.
#pragma once
#include "dialogs/main/cDlgVarDesk.h"
#include "dialogs/VarListView.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"

#include "ScriptedUiServices.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace commandstest {

// A user at the script: answers come from a queue (an empty queue cancels), every printed line
// is kept, and a modal dialog is handed to modal, or ends at once with its present result.
class FakeUser : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string&) override {
        if (answers.empty())
            return "cancel";
        std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }
    int driveModal(QDialog& dialog) override { return modal ? modal(dialog) : dialog.result(); }

    void reset() {
        lines.clear();
        answers.clear();
        modal = nullptr;
    }

    std::vector<std::string> lines;
    std::deque<std::string> answers;
    std::function<int(QDialog&)> modal;
};

inline FakeUser& user() {
    static FakeUser instance;
    return instance;
}

inline kova::ScriptedUiServices& services() {
    static kova::ScriptedUiServices instance(user());
    return instance;
}

// The control of a dialog by its numeric id.
template <typename T> T* control(QWidget& dialog, int id) {
    return dialog.findChild<T*>(QString::number(id));
}

inline std::string infoBox(const std::string& text) {
    return "BOX info: " + gMsg.TiMsgBoxInfo + ": " + text;
}

// A host with the scripted user, a scratch folder and the context of one new drawing. The
// search, selection and configuration dialogs need nothing more; prepareHost adds to the host
// what must be there before the drawing is made.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/vardesk-dialogs-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        user().reset();
        host.setUiServices(&services());
        host.setOutput([](const std::string&) {});
        prepareHost();
        if (HasFatalFailure())
            return;
        AcApDocument* doc = host.newDocument();
        ASSERT_NE(doc, nullptr);
        context = std::make_unique<cDocCntx>(doc);
        prepareContext();
    }
    virtual void prepareHost() {}
    // What a test class puts into the context of the new drawing.
    virtual void prepareContext() {}

    void TearDown() override {
        context.reset();
        host.shutdown();
        user().reset();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    // A record of the context's list as a load would leave it, with its texts.
    void addRecord(const char* theme, const char* name, const char* marks, const char* current,
                   const char* newText = "", const char* description = "Beschreibung") {
        cSysVarList& list = context->varList;
        ASSERT_TRUE(list.addVariable(theme, name, marks, description, ++m_line)) << name;
        list.findName(name)->currentText = current;
        list.findName(name)->newText = newText;
    }
    std::string path(const std::string& name) { return (folder / name).string(); }
    void writeFile(const std::string& name, const std::string& text) { std::ofstream(folder / name) << text; }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    std::filesystem::path folder;
    std::unique_ptr<cDocCntx> context;

private:
    int m_line = 0;
};

// Two themes and a theme number the file lacks (FILEDIA); changeable and read-only, drawing and
// global records of every value type the commands need; 3DOSMODE begins with no letter; ANGBASE
// is the one the host changes on the way.
inline constexpr const char* kAvlFile = "0#Einheiten#1\n"
                                        "0#Anzeige#2\n"
                                        "1#LUPREC#++#Nachkommastellen der Längen\n"
                                        "1#AUNITS#++#Winkeleinheit\n"
                                        "1#ANGBASE#++#Basiswinkel\n"
                                        "2#OSMODE#+-#Objektfang\n"
                                        "9#FILEDIA#+-#Dateidialoge\n"
                                        "2#3DOSMODE#+-#3D-Objektfang\n"
                                        "2#INSBASE#++#Einfügebasispunkt\n"
                                        "2#VIEWCTR#-+#Mitte der Ansicht\n";

// The main dialog on the shipped host table and the AVL file above.
class CommandsTest : public HostTest {
protected:
    void prepareHost() override {
        ASSERT_TRUE(host.setProfileDir(folder.string()));
        writeFile("VarDesk.avl", kAvlFile);
        ASSERT_TRUE(host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv"));
    }
    void prepareContext() override {
        gContext.userIniFile = path("VarDesk.ini");
        context->drawingFileName = "Drawing1.dwg";
        context->avlFilePath = path("VarDesk.avl");
        context->editorPath = "/bin/true";
        context->mainPosX = 20;
        context->mainPosY = 30;
        context->mainSizeX = 600;
        context->mainSizeY = 500;
        context->listCtrlFirstCol = 200;
        context->listCtrlSecCol = 100;
        context->listCtrlThirdCol = 100;
    }
    void TearDown() override {
        d.reset();
        HostTest::TearDown();
    }

    // Opens the dialog; the load step has read the AVL file when this returns.
    void open() {
        d.reset();
        d = std::make_unique<cDlgVarDesk>(*context);
        d->show();
        d->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(d.get()));
        QCoreApplication::processEvents();
        ASSERT_NE(context->varList.first, nullptr);
        user().lines.clear();
    }

    cSysVar& at(const char* name) {
        cSysVar* record = context->varList.findName(name);
        EXPECT_NE(record, nullptr) << name;
        return *record;
    }
    // A new value as the value field would apply it (a file's text for a read-only record).
    void setNew(const char* name, const std::string& text) {
        cSysVar& record = at(name);
        if (record.isReadOnly())
            ASSERT_TRUE(record.applyFileText(text)) << name;
        else
            ASSERT_TRUE(record.applyEditText(text)) << name << " " << text;
    }

    // The main dialog's controls, found by their ids as the window automation finds them.
    VarListView& list() { return *control<VarListView>(*d, mainids::kList); }
    QPlainTextEdit& description() { return *control<QPlainTextEdit>(*d, mainids::kDescription); }
    QLineEdit& value() { return *control<QLineEdit>(*d, mainids::kValue); }
    QToolBar& toolBar() { return *control<QToolBar>(*d, mainids::kToolBar); }
    QStatusBar& statusBar() { return *control<QStatusBar>(*d, mainids::kStatusBar); }

    VarListModel& rows() { return *list().rowModel(); }
    int rowOf(const char* name) { return rows().rowOf(&at(name)); }
    void selectRow(int row) {
        list().selectionModel()->select(rows().index(row, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    void clickRow(int row, Qt::KeyboardModifiers mods = {}) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, mods,
                          list().visualRect(rows().index(row, 0)).center());
    }
    // The records of the selected rows, by name, in row order.
    std::vector<std::string> selectedNames() {
        std::vector<std::string> names;
        for (int row = 0; row < rows().rowCount(); ++row)
            if (list().selectionModel()->isSelected(rows().index(row, 0)))
                names.push_back(rows().recordAt(row) ? rows().recordAt(row)->name : "<header>");
        return names;
    }
    std::string pane(int i) { return d->statusPane(i)->text().toStdString(); }
    std::unique_ptr<cDlgVarDesk> d;
};

} // namespace commandstest

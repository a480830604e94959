// cDocCntx: the state of one open drawing, kept from its first document event until the module leaves.
#include "cDocCntx.h"

#include "cContext.h"
#include "cResourceScope.h"
#include "dialogs/main/cDlgVarDesk.h"
#include "HostLookup.h"
#include "Reactors.h"
#include "ReplacementFile.h"
#include "settings/cMsgCatalog.h"
#include "vars/TextHelpers.h"

#include <dbmain.h>

#include <iterator>
#include <new>

namespace {

constexpr const char* kRootName = "Kova_VarDesk";
constexpr const char* kSection = "Settings";
// The program that shows the error log when nothing else was configured.
constexpr const char* kDefaultEditor = "/usr/bin/xdg-open";
// The description file installed beside the module.
constexpr const char* kDefaultAvlFile = "VarDesk.avl";

struct IntSetting {
    const char* key;
    const char* defaultValue;
    std::int32_t cDocCntx::*field;
};

// The order is the order of reading and writing.
constexpr IntSetting kIntSettings[] = {
    {"MainPosX", "20", &cDocCntx::mainPosX},
    {"MainPosY", "20", &cDocCntx::mainPosY},
    {"MainSizeX", "450", &cDocCntx::mainSizeX},
    {"MainSizeY", "320", &cDocCntx::mainSizeY},
    {"SelectionPosX", "20", &cDocCntx::selectionPosX},
    {"SelectionPosY", "20", &cDocCntx::selectionPosY},
    {"SelectionSizeX", "450", &cDocCntx::selectionSizeX},
    {"SelectionSizeY", "320", &cDocCntx::selectionSizeY},
    {"SearchPosX", "20", &cDocCntx::searchPosX},
    {"SearchPosY", "20", &cDocCntx::searchPosY},
    {"SearchSizeX", "200", &cDocCntx::searchSizeX},
    {"SearchSizeY", "120", &cDocCntx::searchSizeY},
    {"ConfigPosX", "20", &cDocCntx::configPosX},
    {"ConfigPosY", "20", &cDocCntx::configPosY},
    {"ConfigSizeX", "300", &cDocCntx::configSizeX},
    {"ConfigSizeY", "130", &cDocCntx::configSizeY},
    {"ListCtrlFirstCol", "200", &cDocCntx::listCtrlFirstCol},
    {"ListCtrlSecCol", "100", &cDocCntx::listCtrlSecCol},
    {"ListCtrlThirdCol", "100", &cDocCntx::listCtrlThirdCol},
    {"ListCtrl2FirstCol", "200", &cDocCntx::listCtrl2FirstCol},
    {"ListCtrl2SecCol", "100", &cDocCntx::listCtrl2SecCol},
    // Read and written, though the selection list has no third column.
    {"ListCtrl2ThirdCol", "100", &cDocCntx::listCtrl2ThirdCol},
    {"SearchCheck", "15", &cDocCntx::searchCheck},
};

struct TextSetting {
    const char* key;
    std::string cDocCntx::*field;
    std::string cDocCntx::*drawingOffer; // null for a text that names no program or file
};

constexpr TextSetting kTextSettings[] = {
    {"Editor", &cDocCntx::editorPath, &cDocCntx::drawingEditorPath},
    {"AutoCADVarList", &cDocCntx::avlFilePath, &cDocCntx::drawingAvlFilePath},
    {"SearchPattern", &cDocCntx::searchPattern, nullptr},
};

// The ini file whose write protection the user has been told of, so that it is told once.
std::string gToldWriteProtected;

std::string textDefault(const std::string& key) {
    if (key == "Editor")
        return kDefaultEditor;
    if (key == "AutoCADVarList")
        return gContext.moduleDirectory + kDefaultAvlFile;
    return {};
}

} // namespace

cDocCntx::cDocCntx(AcApDocument* document) : document(document) {
    unaccountedVars.reserve(kUnaccountedBlock);
    if (const AcDbDatabase* database = hostLookup::workingDatabase()) {
        dbsReactor = new (std::nothrow) cDbsReactor;
        if (dbsReactor)
            dbsReactor->attachTo(database);
    }
}

cDocCntx::~cDocCntx() {
    delete dbsReactor; // takes itself from the database it was put on
}

std::string cDocCntx::settingsDrawingName() const {
    std::string fileName;
    std::string name;
    pathFileName(gContext.userIniFile, fileName);
    return pathStem(fileName, name);
}

void cDocCntx::LoadSettings() {
    Open(gContext.userIniFile, kRootName, settingsDrawingName(), kSection, true, true);
    for (const IntSetting& setting : kIntSettings)
        GetInt(setting.key, setting.defaultValue, this->*setting.field);
    for (const TextSetting& setting : kTextSettings) {
        std::string& field = this->*setting.field;
        GetString(setting.key, textDefault(setting.key), field);
        if (!setting.drawingOffer)
            continue;
        std::string& offered = this->*setting.drawingOffer;
        std::string own;
        GetFileString(setting.key, textDefault(setting.key), own);
        offered.clear();
        if (field != own) {
            offered = field;
            field = own;
        }
    }
    Close();
}

void cDocCntx::SaveSettings() {
    Open(gContext.userIniFile, kRootName, settingsDrawingName(), kSection, true, true);
    for (const IntSetting& setting : kIntSettings)
        PutInt(setting.key, this->*setting.field, true);
    for (const TextSetting& setting : kTextSettings) {
        PutString(setting.key, this->*setting.field, true);
        // Not yet answered: the user's own goes to the ini file, and the drawing keeps its own.
        if (setting.drawingOffer && !(this->*setting.drawingOffer).empty())
            PutString(setting.key, this->*setting.drawingOffer, false);
    }
    Close(); // writes the values into the drawing
    if (fileWriteFailed() && kova::ReplacementFile::isWriteProtected(gContext.userIniFile) &&
        gToldWriteProtected != gContext.userIniFile) {
        gToldWriteProtected = gContext.userIniFile;
        ShowWarningBox(gContext.userIniFile + " " + gMsg.TxIniWriteProtected);
    }
}

void cDocCntx::AskForDrawingPath(DrawingPath which) {
    const bool editor = which == DrawingPath::Editor;
    std::string& offered = editor ? drawingEditorPath : drawingAvlFilePath;
    if (offered.empty())
        return;
    std::string& own = editor ? editorPath : avlFilePath;
    const std::string& text = editor ? gMsg.TxDrawingEditor : gMsg.TxDrawingAvlFile;
    const std::string question =
        formatText("%s\n%s\n%s %s", text.c_str(), offered.c_str(), gMsg.TxKeepOwnPath.c_str(), own.c_str());
    if (gMsg.AskYesNo(question))
        own = offered;
    offered.clear();
}

const std::string& cDocCntx::userIniFile() const {
    return gContext.userIniFile;
}

const std::string& cDocCntx::moduleBaseName() const {
    return gContext.moduleBaseName;
}

void cDocCntx::CaptureNumberFormat(const AcDbDatabase* database) {
    signed char separator = ' ';
    int precision = -1;
    if (database) {
        separator = static_cast<signed char>(database->dimdsep());
        precision = database->luprec();
    }
    // The separator stands between the coordinates of a point and is read back between them:
    // a control character, a byte of a multibyte character (negative as a signed char), a digit
    // or an exponent letter would make the point's text unreadable.
    if (separator < ' ' || (separator >= '0' && separator <= '9') || separator == 'E' || separator == 'e')
        separator = ' ';
    if (precision < 0)
        precision = 4;
    varList.pointSeparator = static_cast<char>(separator);
    varList.valuePrecision = precision;
}

void cDocCntx::RunDialogLoop() {
    CaptureNumberFormat(hostLookup::workingDatabase());
    // The module's resources are in force while the main dialog is made and runs.
    gResourceScope.Enter();
    runMainDialog(*this);
    gResourceScope.Leave();
}

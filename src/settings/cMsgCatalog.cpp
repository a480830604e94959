// The message catalog: the key table, loading the catalog file, and the message boxes.
#include "cMsgCatalog.h"

#include "ProfileFile.h"
#include "UiServices.h"

#include <acedads.h>
#include <hostui.h>

#include <cstdio>
#include <iterator>

cMsgCatalog gMsg;

namespace {

// The profile functions fill a buffer of this size, so a value keeps at most 511 bytes.
constexpr std::size_t kValueBufferSize = 512;

const cMsgCatalog::Entry kEntries[] = {
    {"RsVersionTitle", &cMsgCatalog::RsVersionTitle},
    {"RsVersionText1", &cMsgCatalog::RsVersionText1},
    {"RsVersionText2", &cMsgCatalog::RsVersionText2},
    {"RsVersionText3", &cMsgCatalog::RsVersionText3},
    {"TiVarDesk", &cMsgCatalog::TiVarDesk},
    {"TiSlctSysVar", &cMsgCatalog::TiSlctSysVar},
    {"TiSearch", &cMsgCatalog::TiSearch},
    {"TiConfig", &cMsgCatalog::TiConfig},
    {"TiDlgInfo", &cMsgCatalog::TiDlgInfo},
    {"TiSettings", &cMsgCatalog::TiSettings},
    {"TiMsgBoxInfo", &cMsgCatalog::TiMsgBoxInfo},
    {"TiMsgBoxWarn", &cMsgCatalog::TiMsgBoxWarn},
    {"TiMsgBoxError", &cMsgCatalog::TiMsgBoxError},
    {"TiMsgBoxQuestion", &cMsgCatalog::TiMsgBoxQuestion},
    {"MnFile", &cMsgCatalog::MnFile},
    {"MnNew", &cMsgCatalog::MnNew},
    {"MnOpen", &cMsgCatalog::MnOpen},
    {"MnSave", &cMsgCatalog::MnSave},
    {"MnSaveAs", &cMsgCatalog::MnSaveAs},
    {"MnEnd", &cMsgCatalog::MnEnd},
    {"MnEdit", &cMsgCatalog::MnEdit},
    {"MnSelectAll", &cMsgCatalog::MnSelectAll},
    {"MnInverse", &cMsgCatalog::MnInverse},
    {"MnSelectList", &cMsgCatalog::MnSelectList},
    {"MnFind", &cMsgCatalog::MnFind},
    {"MnView", &cMsgCatalog::MnView},
    {"MnShowAll", &cMsgCatalog::MnShowAll},
    {"MnShowList", &cMsgCatalog::MnShowList},
    {"MnSortLetter", &cMsgCatalog::MnSortLetter},
    {"MnSortTheme", &cMsgCatalog::MnSortTheme},
    {"MnSortGlobeA", &cMsgCatalog::MnSortGlobeA},
    {"MnSortGlobeT", &cMsgCatalog::MnSortGlobeT},
    {"MnShowErrorLog", &cMsgCatalog::MnShowErrorLog},
    {"MnVar", &cMsgCatalog::MnVar},
    {"MnAdd", &cMsgCatalog::MnAdd},
    {"MnDelete", &cMsgCatalog::MnDelete},
    {"MnSetSelection", &cMsgCatalog::MnSetSelection},
    {"MnSetAll", &cMsgCatalog::MnSetAll},
    {"MnCompare", &cMsgCatalog::MnCompare},
    {"MnOptions", &cMsgCatalog::MnOptions},
    {"MnConfig", &cMsgCatalog::MnConfig},
    {"MnCatHelp", &cMsgCatalog::MnCatHelp},
    {"MnHelp", &cMsgCatalog::MnHelp},
    {"MnInfo", &cMsgCatalog::MnInfo},
    {"StTheme", &cMsgCatalog::StTheme},
    {"StMode", &cMsgCatalog::StMode},
    {"StScope", &cMsgCatalog::StScope},
    {"StGlobal", &cMsgCatalog::StGlobal},
    {"StDrawSpecific", &cMsgCatalog::StDrawSpecific},
    {"StProtected", &cMsgCatalog::StProtected},
    {"StChangeable", &cMsgCatalog::StChangeable},
    {"StSearchOptions", &cMsgCatalog::StSearchOptions},
    {"ClVariable", &cMsgCatalog::ClVariable},
    {"ClAcadValue", &cMsgCatalog::ClAcadValue},
    {"ClNewValue", &cMsgCatalog::ClNewValue},
    {"TxNewVarFile", &cMsgCatalog::TxNewVarFile},
    {"FiAll", &cMsgCatalog::FiAll},
    {"FiUserVarList", &cMsgCatalog::FiUserVarList},
    {"FiAcadVarList", &cMsgCatalog::FiAcadVarList},
    {"FiExecutables", &cMsgCatalog::FiExecutables},
    {"RsBtnOk", &cMsgCatalog::RsBtnOk},
    {"RsBtnCancel", &cMsgCatalog::RsBtnCancel},
    {"RsBtnClose", &cMsgCatalog::RsBtnClose},
    {"RsBtnHelp", &cMsgCatalog::RsBtnHelp},
    {"RsBtnYes", &cMsgCatalog::RsBtnYes},
    {"RsBtnNo", &cMsgCatalog::RsBtnNo},
    {"RsBtnZoom", &cMsgCatalog::RsBtnZoom},
    {"RsBtnApply", &cMsgCatalog::RsBtnApply},
    {"RsBtnSearch", &cMsgCatalog::RsBtnSearch},
    {"RsBtnNext", &cMsgCatalog::RsBtnNext},
    {"RsBtnPrevious", &cMsgCatalog::RsBtnPrevious},
    {"RsBtnAll", &cMsgCatalog::RsBtnAll},
    {"RsBtnCheckVariable", &cMsgCatalog::RsBtnCheckVariable},
    {"RsBtnCheckDescription", &cMsgCatalog::RsBtnCheckDescription},
    {"RsBtnCheckValueOld", &cMsgCatalog::RsBtnCheckValueOld},
    {"RsBtnCheckValueNew", &cMsgCatalog::RsBtnCheckValueNew},
    {"RsStcSearch", &cMsgCatalog::RsStcSearch},
    {"RsStcEditor", &cMsgCatalog::RsStcEditor},
    {"RsStcAVL", &cMsgCatalog::RsStcAVL},
    {"RsStcSearchPattern", &cMsgCatalog::RsStcSearchPattern},
    {"RsStcSearchOptions", &cMsgCatalog::RsStcSearchOptions},
    {"TxNewAcadListSelected", &cMsgCatalog::TxNewAcadListSelected},
    {"TxSaveUserList", &cMsgCatalog::TxSaveUserList},
    {"TxNoAcadVar", &cMsgCatalog::TxNoAcadVar},
    {"TxDefaultTheme", &cMsgCatalog::TxDefaultTheme},
    {"TxNoSelection", &cMsgCatalog::TxNoSelection},
    {"TxAbort", &cMsgCatalog::TxAbort},
    {"Tx_and", &cMsgCatalog::Tx_and},
    {"TxDoNotExist", &cMsgCatalog::TxDoNotExist},
    {"TxDoesNotExist", &cMsgCatalog::TxDoesNotExist},
    {"TxAssume", &cMsgCatalog::TxAssume},
    {"TxTime", &cMsgCatalog::TxTime},
    {"TxDate", &cMsgCatalog::TxDate},
    {"TxFile", &cMsgCatalog::TxFile},
    {"TxFileReadError", &cMsgCatalog::TxFileReadError},
    {"TxFileReadFailure", &cMsgCatalog::TxFileReadFailure},
    {"TxFileWriteFailure", &cMsgCatalog::TxFileWriteFailure},
    {"TxShowErrorLog", &cMsgCatalog::TxShowErrorLog},
    {"TxErrorLogTitle", &cMsgCatalog::TxErrorLogTitle},
    {"TxNoUserList", &cMsgCatalog::TxNoUserList},
    {"TxGlobal", &cMsgCatalog::TxGlobal},
    {"TxDrawSpecific", &cMsgCatalog::TxDrawSpecific},
    {"TxWriteSuccess", &cMsgCatalog::TxWriteSuccess},
    {"TxWriteSuccessOnce", &cMsgCatalog::TxWriteSuccessOnce},
    {"TxWriteFailure", &cMsgCatalog::TxWriteFailure},
    {"TxWriteFailureOnce", &cMsgCatalog::TxWriteFailureOnce},
    {"TxWriteNone", &cMsgCatalog::TxWriteNone},
    {"TxFileOpenFailure", &cMsgCatalog::TxFileOpenFailure},
    {"TxReadError", &cMsgCatalog::TxReadError},
    {"TxProofError", &cMsgCatalog::TxProofError},
    {"TxReadErrorStart", &cMsgCatalog::TxReadErrorStart},
    {"TxReadErrorEnd", &cMsgCatalog::TxReadErrorEnd},
    {"TxInsertError", &cMsgCatalog::TxInsertError},
    {"TxInsertErrorOnce", &cMsgCatalog::TxInsertErrorOnce},
    {"TxVarNotFound", &cMsgCatalog::TxVarNotFound},
    {"TxOneVarFound", &cMsgCatalog::TxOneVarFound},
    {"TxVarFound", &cMsgCatalog::TxVarFound},
    {"TxVarLoaded", &cMsgCatalog::TxVarLoaded},
    {"TxSysLoadError0", &cMsgCatalog::TxSysLoadError0},
    {"TxSysLoadError1", &cMsgCatalog::TxSysLoadError1},
    {"TxSysLoadError2", &cMsgCatalog::TxSysLoadError2},
    {"TxSysLoadError3", &cMsgCatalog::TxSysLoadError3},
    {"TxSysLoadError4", &cMsgCatalog::TxSysLoadError4},
    {"TxSysLoadError5", &cMsgCatalog::TxSysLoadError5},
    {"TxSysLoadError6", &cMsgCatalog::TxSysLoadError6},
    {"TxSysLoadError7", &cMsgCatalog::TxSysLoadError7},
    {"TxSysLoadError8", &cMsgCatalog::TxSysLoadError8},
    {"TxSysLoadError9", &cMsgCatalog::TxSysLoadError9},
    {"TxProofError1", &cMsgCatalog::TxProofError1},
    {"TxPathNotFound1", &cMsgCatalog::TxPathNotFound1},
    {"TxPathNotFound2", &cMsgCatalog::TxPathNotFound2},
    {"TxHelpKeyNotFound1", &cMsgCatalog::TxHelpKeyNotFound1},
    {"TxHelpKeyNotFound2", &cMsgCatalog::TxHelpKeyNotFound2},
    {"TxHelpFileNotFound1", &cMsgCatalog::TxHelpFileNotFound1},
    {"TxHelpFileNotFound2", &cMsgCatalog::TxHelpFileNotFound2},
    {"TxPressReturnToContinue", &cMsgCatalog::TxPressReturnToContinue},
    {"TxNoDrawingDocument", &cMsgCatalog::TxNoDrawingDocument},
    {"EtMemoryShortage", &cMsgCatalog::EtMemoryShortage},
    {"TxSpawnBig", &cMsgCatalog::TxSpawnBig},
    {"TxSpawnNotFound", &cMsgCatalog::TxSpawnNotFound},
    {"TxSpawnNoExe", &cMsgCatalog::TxSpawnNoExe},
    {"TxSpawnNoMemory", &cMsgCatalog::TxSpawnNoMemory},
    {"TxDrawingEditor", &cMsgCatalog::TxDrawingEditor},
    {"TxDrawingAvlFile", &cMsgCatalog::TxDrawingAvlFile},
    {"TxKeepOwnPath", &cMsgCatalog::TxKeepOwnPath},
    {"TxIniWriteProtected", &cMsgCatalog::TxIniWriteProtected},
};

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    std::size_t pos = 0;
    while ((pos = text.find(from, pos)) != std::string::npos) {
        text.replace(pos, from.size(), to);
        pos += to.size();
    }
}

// The catalog's escapes, worked on in this order, each over the result of the one before.
void applyEscapes(std::string& text) {
    replaceAll(text, "\\n", "\n\r");
    replaceAll(text, "\\t", "\t");
    replaceAll(text, "~", "");
}

void showBox(kova::BoxKind kind, const std::string& title, const std::string& text) {
    if (kova::UiServices* ui = acHostUiServices())
        ui->messageBox(kind, title, text, kova::BoxButtons::Ok);
}

} // namespace

cMsgCatalog::cMsgCatalog() = default;

std::span<const cMsgCatalog::Entry> cMsgCatalog::Entries() {
    return kEntries;
}

bool cMsgCatalog::Load(const std::string& path) {
    filePath = path;
    missingCount = 0;
    kova::profile::ProfileFile file(filePath); // read once for all the keys
    for (const Entry& entry : kEntries) {
        std::string value;
        const std::size_t length = file.getString(section, entry.key, "", value, kValueBufferSize);
        if (length > 0) {
            applyEscapes(value);
            this->*entry.text = value;
            continue;
        }
        if (missingCount == 0) {
            char message[256];
            std::snprintf(message, sizeof message, "message text not found: key '%s'", entry.key);
            acedAlert(message);
        }
        ++missingCount;
    }
    if (missingCount < 2)
        return true;
    char message[64];
    std::snprintf(message, sizeof message, "%d message texts not found\n", static_cast<int>(missingCount));
    acedAlert(message);
    return false;
}

void cMsgCatalog::ShowInfoBox(const std::string& text) const {
    showBox(kova::BoxKind::Info, TiMsgBoxInfo, text);
}

void cMsgCatalog::ShowWarningBox(const std::string& text) const {
    showBox(kova::BoxKind::Warning, TiMsgBoxWarn, text);
}

void cMsgCatalog::ShowErrorBox(const std::string& text) const {
    showBox(kova::BoxKind::Error, TiMsgBoxError, text);
}

bool cMsgCatalog::AskYesNo(const std::string& text, kova::BoxKind kind) const {
    kova::UiServices* ui = acHostUiServices();
    return ui &&
           ui->messageBox(kind, TiMsgBoxQuestion, text, kova::BoxButtons::YesNo) == kova::BoxAnswer::Yes;
}

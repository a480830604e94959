// cDocCntx: the state of one open drawing, kept from its first document event until the module leaves.
#pragma once
#include "cSetup.h"
#include "vars/cSysVarList.h"

#include <cstdint>
#include <string>
#include <vector>

class AcApDocument;
class AcDbDatabase;
class cDbsReactor;

// Settings, window rectangles, view modes, the variable list and the error count of one
// drawing. Made and owned by cDocList; a second run of the command in the same drawing finds
// everything as the last run left it. The settings fields are filled by LoadSettings at the
// start of every run, so the values given here never reach a dialog.
class cDocCntx : public cSetup {
public:
    // Made for document (not owned; the key of the record, compared by identity). When the
    // host has a working database now, a database reactor is put on it.
    explicit cDocCntx(AcApDocument* document);
    // Takes the database reactor from the database it was put on, unless that said goodbye.
    ~cDocCntx() override;

    // Reads the 26 settings keys from the user ini file and the drawing (a non-empty value in
    // the drawing wins); a missing key gives its default.
    void LoadSettings();
    // Writes the 26 settings keys to the user ini file and into the drawing.
    void SaveSettings();
    // Asks about the path that the drawing brought for the editor or the description file, if
    // there is one: a question that names it and the user's own. Yes makes it the path in use
    // (and the next SaveSettings writes it to the ini file); No keeps the user's own. Either
    // answer ends the offer.
    enum class DrawingPath { Editor, AvlFile };
    void AskForDrawingPath(DrawingPath which);
    // Captures the drawing's number format into the variable list, then runs the main dialog.
    void RunDialogLoop();
    // Sets pointSeparator and valuePrecision of the list from database (DIMDSEP and LUPREC), or
    // a blank and -1 when it is null; then a separator that a point's text could not be read
    // back with (below the blank as a signed character, a digit, "E" or "e") becomes a blank and
    // a negative precision becomes 4.
    void CaptureNumberFormat(const AcDbDatabase* database);

    AcApDocument* document;
    cDocCntx* next = nullptr;

    std::string drawingPath;     // the document's full file name
    std::string drawingStem;     // drawingPath without extension; in the working directory when bare
    std::string drawingFileName; // file name with extension (title of the main dialog)
    std::string drawingBaseName; // file name without extension

    cDbsReactor* dbsReactor = nullptr; // owned; null when no database was there at creation

    // Window rectangles in screen pixels and column widths, unset until LoadSettings.
    std::int32_t mainPosX = 0, mainPosY = 0, mainSizeX = 0, mainSizeY = 0;
    std::int32_t selectionPosX = 0, selectionPosY = 0, selectionSizeX = 0, selectionSizeY = 0;
    std::int32_t searchPosX = 0, searchPosY = 0, searchSizeX = 0, searchSizeY = 0;
    std::int32_t configPosX = 0, configPosY = 0, configSizeX = 0, configSizeY = 0;
    std::int32_t listCtrlFirstCol = 0, listCtrlSecCol = 0, listCtrlThirdCol = 0;
    std::int32_t listCtrl2FirstCol = 0, listCtrl2SecCol = 0, listCtrl2ThirdCol = 0;

    std::string avlFilePath; // key AutoCADVarList
    std::string editorPath;  // key Editor
    // A path of those two keys that the drawing holds and that differs from the user's own (the
    // ini file's or the default): a drawing may come from anyone, so it is neither started or
    // read nor written to the ini file before the user says yes (AskForDrawingPath). The field
    // above keeps the user's own meanwhile, and the drawing keeps what it brought. Empty: none.
    std::string drawingAvlFilePath;
    std::string drawingEditorPath;

    std::int32_t view = 0;        // 0 all variables, 1 user list only
    std::int32_t compareMode = 0; // 0 off, 1 on
    std::int32_t viewOrder = 0;   // 0 to 3

    cSysVarList varList;

    std::string searchPattern;    // key SearchPattern
    std::int32_t searchCheck = 0; // key SearchCheck: field mask of the search dialog

    std::int32_t errorCount = 0; // report lines met since the last reset
    // Names the host has and the list lacks; grows in blocks of kUnaccountedBlock.
    std::vector<std::string> unaccountedVars;
    static constexpr std::size_t kUnaccountedBlock = 10;

private:
    // Name of the drawing's settings dictionary part: the user ini file's name without extension.
    std::string settingsDrawingName() const;
};

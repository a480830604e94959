// DocumentState: what the dialogs and the load step keep of one drawing between runs of the command.
#pragma once
#include "cSetup.h"
#include "cSysVarList.h"
#include "ListModes.h"

#include <cstdint>
#include <string>
#include <vector>

// Settings, window rectangles, view modes, the variable list and the error count of one
// drawing. The frame's document context derives from it, answers where the module's files lie
// and asks the user about paths; everything below the frame sees a drawing only through this class.
class DocumentState : public cSetup {
public:
    // Where the user's ini file lies and the module's base name: the error log is written
    // beside the one and named after the other.
    virtual const std::string& userIniFile() const = 0;
    virtual const std::string& moduleBaseName() const = 0;

    // Asks about the path that the drawing brought for the editor or the description file, if
    // there is one: a question that names it and the user's own. Yes makes it the path in use
    // (and the next SaveSettings writes it to the ini file); No keeps the user's own. Either
    // answer ends the offer.
    enum class DrawingPath { Editor, AvlFile };
    virtual void AskForDrawingPath(DrawingPath which) = 0;

    std::string drawingPath;     // the document's full file name
    std::string drawingStem;     // drawingPath without extension; in the working directory when bare
    std::string drawingFileName; // file name with extension (title of the main dialog)
    std::string drawingBaseName; // file name without extension

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

    ListView view = ListView::All;
    CompareMode compareMode = CompareMode::Off;
    ListOrder viewOrder = ListOrder::Letter;

    cSysVarList varList;

    std::string searchPattern;    // key SearchPattern
    std::int32_t searchCheck = 0; // key SearchCheck: field mask of the search dialog

    std::int32_t errorCount = 0; // report lines met since the last reset
    // Names the host has and the list lacks; grows in blocks of kUnaccountedBlock.
    std::vector<std::string> unaccountedVars;
    static constexpr std::size_t kUnaccountedBlock = 10;
};

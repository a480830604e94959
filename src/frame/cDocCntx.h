// cDocCntx: the state of one open drawing, kept from its first document event until the module leaves.
#pragma once
#include "vars/DocumentState.h"

#include <string>

class AcApDocument;
class AcDbDatabase;
class cDbsReactor;

// Settings, window rectangles, view modes, the variable list and the error count of one
// drawing. Made and owned by cDocList; a second run of the command in the same drawing finds
// everything as the last run left it. The settings fields are filled by LoadSettings at the
// start of every run, so the values given here never reach a dialog.
class cDocCntx : public DocumentState {
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
    // Captures the drawing's number format into the variable list, then runs the main dialog.
    void RunDialogLoop();
    // Sets pointSeparator and valuePrecision of the list from database (DIMDSEP and LUPREC), or
    // a blank and -1 when it is null; then a separator that a point's text could not be read
    // back with (below the blank as a signed character, a digit, "E" or "e") becomes a blank and
    // a negative precision becomes 4.
    void CaptureNumberFormat(const AcDbDatabase* database);

    AcApDocument* document;
    cDocCntx* next = nullptr;

    cDbsReactor* dbsReactor = nullptr; // owned; null when no database was there at creation

    void AskForDrawingPath(DrawingPath which) override;
    // Where the module's files lie: the program-wide paths of gContext.
    const std::string& userIniFile() const override;
    const std::string& moduleBaseName() const override;

private:
    // Name of the drawing's settings dictionary part: the user ini file's name without extension.
    std::string settingsDrawingName() const;
};

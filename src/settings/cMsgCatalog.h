// cMsgCatalog: every text the user reads, by key, with German defaults and a catalog file to
// replace them.
#pragma once
#include "UiServices.h"

#include <cstdint>
#include <span>
#include <string>

// The catalog of texts. Each text is a public field named by its key and holds its German
// default until Load replaces it from the catalog file. Filled once at module start and read-only
// afterwards.
class cMsgCatalog {
public:
    cMsgCatalog();

    // Reads every key, in field order, from the profile file at path, in the section named by the
    // module base name. A value read is taken after three replacements, in this order: "\n" (a
    // backslash and n) becomes a line feed and a carriage return, "\t" a tab, and every "~" is
    // removed (so a value can keep blanks at its ends inside tildes). A value is at most 511
    // bytes. A key that is missing or empty keeps its text; the first missing key is named in an
    // alert, and two or more missing keys add a second alert with their number. Returns false
    // when two or more keys were missing. Never fails otherwise: an unreadable file counts as a
    // file without keys.
    bool Load(const std::string& path);

    // A box with one OK button, the catalog title of its kind and the matching icon, owned by
    // the host's main window. Titles TiMsgBoxInfo, TiMsgBoxWarn and TiMsgBoxError.
    void ShowInfoBox(const std::string& text) const;
    void ShowWarningBox(const std::string& text) const;
    void ShowErrorBox(const std::string& text) const;
    // A question with Yes and No, titled TiMsgBoxQuestion; true only for Yes (false, too, when
    // the host gives no UI services).
    bool AskYesNo(const std::string& text, kova::BoxKind kind = kova::BoxKind::Question) const;

    // One key and the field that holds its text.
    struct Entry {
        const char* key;
        std::string cMsgCatalog::*text;
    };
    // Every key, in the order Load reads them.
    static std::span<const Entry> Entries();

    std::string filePath;            // the path given to Load
    std::int32_t missingCount = 0;   // keys that Load did not find
    std::string section = "VarDesk"; // the module base name; the frame gives it at start

    // ---- the texts, in the order of Load ----
    std::string RsVersionTitle = "VarDesk";
    std::string RsVersionText1 = "Version:";
    std::string RsVersionText2 = "Build-Nr:";
    std::string RsVersionText3 = "Copyright (C):";
    std::string TiVarDesk = "System-Variablen";
    std::string TiSlctSysVar = "System-Variablen - Auswahl";
    std::string TiSearch = "System-Variablen - Suchen";
    std::string TiConfig = "System-Variablen - Konfiguration";
    std::string TiDlgInfo = "Info";
    std::string TiSettings = "RT·VarDesk - Settings";
    std::string TiMsgBoxInfo = "RT·VarDesk - Hinweis";
    std::string TiMsgBoxWarn = "RT·VarDesk - Warnung";
    std::string TiMsgBoxError = "RT·VarDesk - Fehler";
    std::string TiMsgBoxQuestion = "RT·VarDesk - Rückfrage";
    std::string MnFile = "Datei";
    std::string MnNew = "Neu";
    std::string MnOpen = "Öffnen ...";
    std::string MnSave = "Speichern";
    std::string MnSaveAs = "Speichern als ...";
    std::string MnEnd = "Beenden";
    std::string MnEdit = "Bearbeiten";
    std::string MnSelectAll = "Alles markieren";
    std::string MnInverse = "Markierung umkehren";
    std::string MnSelectList = "neue Werte (markieren)";
    std::string MnFind = "Suchen";
    std::string MnView = "Ansicht";
    std::string MnShowAll = "Alle aktuellen";
    std::string MnShowList = "Nur Benutzerdefinierte";
    std::string MnSortLetter = "Alphabetisch geordnet";
    std::string MnSortTheme = "Nach Themen geordnet";
    std::string MnSortGlobeA = "Nach Gültigkeitsbereich (alphabetisch) geordnet";
    std::string MnSortGlobeT = "Nach Gültigkeitsbereich (Themen) geordnet";
    std::string MnShowErrorLog = "Fehlerprotokoll anzeigen";
    std::string MnVar = "Variable";
    std::string MnAdd = "Hinzufügen";
    std::string MnDelete = "Entfernen";
    std::string MnSetSelection = "ausgewählte Variable(n) setzen";
    std::string MnSetAll = "Alle setzen";
    std::string MnCompare = "Vergleichen";
    std::string MnOptions = "Optionen";
    std::string MnConfig = "Konfiguration";
    std::string MnCatHelp = "?";
    std::string MnHelp = "Hilfe";
    std::string MnInfo = "Info";
    std::string StTheme = "Thema";
    std::string StMode = "Modus";
    std::string StScope = "Gültigkeitsbereich";
    std::string StGlobal = "global";
    std::string StDrawSpecific = "zeichnungsabhängig";
    std::string StProtected = "schreibgeschützt";
    std::string StChangeable = "änderbar";
    std::string StSearchOptions = "Suchen in";
    std::string ClVariable = "Variable";
    std::string ClAcadValue = "aktueller Wert";
    std::string ClNewValue = "neuer Wert";
    std::string TxNewVarFile = "unbenannt";
    std::string FiAll = "Alle Dateien";
    std::string FiUserVarList = "Benutzerdefinierte Variablenliste";
    std::string FiAcadVarList = "AutoCAD Variablenliste";
    std::string FiExecutables = "Ausführbare Dateien";
    std::string RsBtnOk = "OK";
    std::string RsBtnCancel = "Abbrechen";
    std::string RsBtnClose = "Schliessen";
    std::string RsBtnHelp = "Hilfe";
    std::string RsBtnYes = "Ja";
    std::string RsBtnNo = "Nein";
    std::string RsBtnZoom = "Zoom";
    std::string RsBtnApply = "Anwenden";
    std::string RsBtnSearch = "Suchen";
    std::string RsBtnNext = "weiter";
    std::string RsBtnPrevious = "zurück";
    std::string RsBtnAll = "alle Treffer";
    std::string RsBtnCheckVariable = "Variable";
    std::string RsBtnCheckDescription = "Beschreibung";
    std::string RsBtnCheckValueOld = "aktueller Wert";
    std::string RsBtnCheckValueNew = "neuer Wert";
    std::string RsStcSearch = "Suchen nach";
    std::string RsStcEditor = "Editor";
    std::string RsStcAVL = "AutoCAD Variablenliste";
    std::string RsStcSearchPattern = "Suchen nach";
    std::string RsStcSearchOptions = "Suche in ...";
    std::string TxNewAcadListSelected = "Es wurde eine andere AutoCAD Variablenliste ausgewählt.";
    std::string TxSaveUserList = "Sollen die Variablen der benutzerdefinierte Liste gespeichert werden?";
    std::string TxNoAcadVar = "enthält keine Beschreibung von AutoCAD-Variablen.";
    std::string TxDefaultTheme = "Sonstige";
    std::string TxNoSelection = "Es wurden keine Variablen ausgewählt!";
    std::string TxAbort = "Abbruch";
    std::string Tx_and = "und";
    std::string TxDoNotExist = "existieren nicht.";
    std::string TxDoesNotExist = "existiert nicht.";
    std::string TxAssume = "Trotzdem übernehmen?";
    std::string TxTime = "Uhrzeit";
    std::string TxDate = "Datum";
    std::string TxFile = "Datei";
    std::string TxFileReadError = "I/O-Fehler beim Lesen in Zeile";
    std::string TxFileReadFailure = "Fataler I/O-Fehler beim Lesen von";
    std::string TxFileWriteFailure = "Fataler I/O-Fehler beim Schreiben von";
    std::string TxShowErrorLog =
        "Beim Einlesen der Variablen sind Fehler aufgetaucht. Soll das Fehlerprotokoll angezeigt werden?";
    std::string TxErrorLogTitle = "Fehlerprotokoll";
    std::string TxNoUserList = "Es sind keine Einträge in der Variablenliste vorhanden!";
    std::string TxGlobal = "globale Variablen";
    std::string TxDrawSpecific = "zeichnungsabhängige Variablen";
    std::string TxWriteSuccess = "Variablen wurden erfolgreich gesetzt.";
    std::string TxWriteSuccessOnce = "Eine Variable wurde erfolgreich gesetzt.";
    std::string TxWriteFailure = "Variablen konnten nicht gesetzt werden.";
    std::string TxWriteFailureOnce = "Eine Variable konnte nicht gesetzt werden.";
    std::string TxWriteNone = "Es wurden keine Variablen gesetzt.";
    std::string TxFileOpenFailure = " kann nicht geladen werden!";
    std::string TxReadError = "Fehler beim Abfragen der AutoCAD-Variablen";
    std::string TxProofError = "Nicht berücksichtigte Variablen der aktuellen AutoCAD-Version";
    std::string TxReadErrorStart = "Es sind Fehler beim Lesen von";
    std::string TxReadErrorEnd = "aufgetreten.";
    std::string TxInsertError =
        "Variablen konnten nicht in die aktuelle AutoCAD-Variablenliste eingesetzt werden.";
    std::string TxInsertErrorOnce =
        "Eine Variablen konnte nicht in die aktuelle AutoCAD-Variablenliste eingesetzt werden.";
    std::string TxVarNotFound = "Keinen passenden Eintrag gefunden!";
    std::string TxOneVarFound = "Einen passenden Eintrag gefunden!";
    std::string TxVarFound = "passende Einträge gefunden!";
    std::string TxVarLoaded = "Die aktuelle Liste enthält Einträge. Soll sie verworfen werden?";
    std::string TxSysLoadError0 = "Fehler beim Laden von";
    std::string TxSysLoadError1 = "Fehler 1: zu wenig Argumente in Zeile";
    std::string TxSysLoadError2 = "Fehler 2: zu viele Argumente in Zeile";
    std::string TxSysLoadError3 = "Fehler 3: Falsches Format für Thema in Zeile";
    std::string TxSysLoadError4 = "Fehler 4: Falsches Format für Variable in Zeile";
    std::string TxSysLoadError5 = "Fehler 5: Variable bereits vorhanden in Zeile";
    std::string TxSysLoadError6 = "Fehler 6: unbekannter Variablenname in Zeile";
    std::string TxSysLoadError7 = "Fehler 7: Thema nicht benannt in Zeile";
    std::string TxSysLoadError8 = "Fehler 8: Index bereits vorhanden in Zeile";
    std::string TxSysLoadError9 = "Fehler 9: Thema bereits vorhanden in Zeile";
    std::string TxProofError1 = "Fehler 10: Fehlende Variable";
    std::string TxPathNotFound1 = "Pfad von";
    std::string TxPathNotFound2 = "nicht gefunden";
    std::string TxHelpKeyNotFound1 = "Hilfeschlüssel";
    std::string TxHelpKeyNotFound2 = "nicht gefunden";
    std::string TxHelpFileNotFound1 = "Hilfedatei";
    std::string TxHelpFileNotFound2 = "nicht gefunden";
    std::string TxPressReturnToContinue = "Weiter mit Return";
    std::string TxNoDrawingDocument = "Keine Zeichnung gefunden";
    std::string EtMemoryShortage = "Zu wenig Speicher verfügbar";
    std::string TxSpawnBig = "Dateiname und -pfad sind zu lang";
    std::string TxSpawnNotFound = "nicht gefunden";
    std::string TxSpawnNoExe = "ist keine ausführbare Datei";
    std::string TxSpawnNoMemory = "Zu wenig Speicher verfügbar";
    std::string TxDrawingEditor =
        "Diese Zeichnung bringt ein anderes Programm zum Anzeigen des Fehlerprotokolls mit. Soll dieses "
        "Programm gestartet und künftig verwendet werden?";
    std::string TxDrawingAvlFile = "Diese Zeichnung bringt eine andere AutoCAD Variablenliste mit. Soll "
                                   "diese Datei gelesen und künftig verwendet werden?";
    std::string TxKeepOwnPath = "Nein behält:";
    std::string TxIniWriteProtected =
        "ist schreibgeschützt: die Einstellungen werden nicht darin gespeichert.";
};

extern cMsgCatalog gMsg;

// The boxes of gMsg, for code that does not name the catalog.
inline void ShowInfoBox(const std::string& text) {
    gMsg.ShowInfoBox(text);
}
inline void ShowWarningBox(const std::string& text) {
    gMsg.ShowWarningBox(text);
}
inline void ShowErrorBox(const std::string& text) {
    gMsg.ShowErrorBox(text);
}

// cSetup: typed settings read from and written to an ini file and the drawing at once.
#pragma once
#include "ProfileFile.h"

#include <cstdint>
#include <memory>
#include <string>

class CKOVA_DwgIni;

// Base of the objects that hold settings. Between Open and Close a value is read from the
// section of the ini file and, when the drawing holds a non-empty value for the key, from the
// drawing, which then wins; a value put goes to both. All values are texts; the typed
// operations format and scan them with the printf format named on each.
//
// Integers thrown by the drawing store are caught here and printed as
// "DwgIni Ausnahmefehler %d\n"; the operation then goes on as if the drawing had no value.
class cSetup {
public:
    cSetup() = default;
    virtual ~cSetup();
    cSetup(const cSetup&) = delete;
    cSetup& operator=(const cSetup&) = delete;

    // Remembers the ini file and the section; with useDrawing, creates the drawing store for
    // the dictionary rootName + drawingName and its record section, which reads the drawing.
    virtual void Open(const std::string& file, const std::string& rootName, const std::string& drawingName,
                      const std::string& section, bool useDrawing, bool useFile);
    // Deletes the drawing store, which writes its values to the drawing when they changed, and
    // lets go of the ini file.
    virtual void Close();

    // out becomes defaultValue, then the file's text when the key stands there (an empty value
    // gives the empty text), then the drawing's text when that is not empty.
    virtual void GetString(const std::string& key, const std::string& defaultValue, std::string& out);
    // Writes the file (when toFile) and hands the text to the drawing store (group code 1).
    virtual void PutString(const std::string& key, const std::string& value, bool toFile);

    // Typed gets: GetString, then a scan; a text that does not scan leaves out as it was.
    virtual void GetFlagWord(const std::string& key, const std::string& defaultValue,
                             std::int32_t& out); // "%d"
    virtual void PutFlagWord(const std::string& key, std::int32_t value, bool toFile);
    virtual void GetBool(const std::string& key, const std::string& defaultValue,
                         bool& out);                                       // "%d", true when not 0
    virtual void PutBool(const std::string& key, bool value, bool toFile); // 0 or 1
    virtual void GetInt(const std::string& key, const std::string& defaultValue, std::int32_t& out); // "%d"
    virtual void PutInt(const std::string& key, std::int32_t value, bool toFile);
    virtual void GetUnsigned(const std::string& key, const std::string& defaultValue,
                             std::uint32_t& out); // "%u"
    virtual void PutUnsigned(const std::string& key, std::uint32_t value, bool toFile);
    virtual void GetDouble(const std::string& key, const std::string& defaultValue, double& out); // "%lf"
    // Five decimals, so whatever lies beyond them is lost.
    virtual void PutDouble(const std::string& key, double value, bool toFile); // "%.5lf"
    virtual void GetLong(const std::string& key, const std::string& defaultValue, std::int32_t& out); // "%ld"
    virtual void PutLong(const std::string& key, std::int32_t value, bool toFile);
    // True when one number was read from text; out is untouched otherwise.
    virtual bool ParseDouble(double& out, const std::string& text); // "%lf"
    // A leading 0 reads as octal, a leading 0x as hexadecimal.
    virtual void GetAnyBaseInt(const std::string& key, const std::string& defaultValue,
                               std::int32_t& out); // "%i"
    virtual void PutAnyBaseInt(const std::string& key, std::int32_t value, bool toFile);

    // True when a value put since Open could not be written to the ini file.
    bool fileWriteFailed() const { return m_fileWriteFailed; }

protected:
    // The ini file's text of key alone, as step one of GetString finds it: defaultValue when
    // the key is missing, the empty text when it stands empty.
    void GetFileString(const std::string& key, const std::string& defaultValue, std::string& out);

    std::string m_fileName;       // path given to Open
    std::string m_activeFileName; // the path the profile functions use
    std::string m_drawingName;    // second part of the drawing dictionary's name
    std::string m_section;        // ini section, and record name in the drawing
    bool m_useDrawing = true;
    bool m_useFile = true;
    CKOVA_DwgIni* m_drawingStore = nullptr; // owned; exists between Open and Close
    bool m_fileWriteFailed = false;

private:
    // The ini file of this use, read once from the first get to Close.
    kova::profile::ProfileFile& profile();
    std::unique_ptr<kova::profile::ProfileFile> m_profile;
};

// CKOVA_DwgIni: key and value pairs kept in an xrecord of the drawing, worked on as a copy in memory.
#pragma once
#include <adsdef.h>

#include <map>
#include <memory>
#include <string>

// The record lives in the working database at
//   Named Objects Dictionary / <root name><drawing name> / <entry name>
// as a chain of pairs: the key (group code 1) and its value (group code 1 as this class writes
// it; 40, 70 and 90 are read too and written back in their own kind; a value of another kind,
// such as a point, counts as not found and is written back as it stood), keys upper-cased, in
// byte order. The whole record is read once all three names are known and written back, when
// anything changed, on destruction or when a name changes.
//
// Faults are printed on the host's command line or thrown as integers, which cSetup catches:
//   3701 a value could not be copied while the map was filled
//   3702 a value could not be copied into the chain being written
//   3703 a null entry was handed over for copying
//   3704 an entry of an unsupported kind was handed over, or building a copy failed
//   3705 write back with no working database
//   3707 a key entry could not be built during write back
class CKOVA_DwgIni {
public:
    static constexpr short kTextGroupCode = 1;

    CKOVA_DwgIni() = default;
    // Writes back when dirty; may therefore throw one of the integers above.
    virtual ~CKOVA_DwgIni() noexcept(false);
    CKOVA_DwgIni(const CKOVA_DwgIni&) = delete;
    CKOVA_DwgIni& operator=(const CKOVA_DwgIni&) = delete;

    // Each setter normalises its text (root: upper case; drawing and entry: upper case with
    // ".", ":", "\" and blanks made "_"). A new name writes back what is pending under the old
    // names, then reads the record under the new ones.
    void SetRootName(const std::string& name);
    void SetDrawingName(const std::string& name);
    void SetEntryName(const std::string& name);

    // True when the key (upper-cased) has a value of a kind readable as text: text as it
    // stands, reals with 12 significant digits, 16- and 32-bit integers in decimal.
    bool Get(const std::string& key, std::string& out);
    // Takes text as the key's value, replacing an older one even when equal, and marks the
    // copy dirty. groupCode 1 stores text; 40, 70 and 90 store the number the text holds and
    // refuse a text that is none. False while a name is missing or for any other group code.
    bool Put(const std::string& key, const std::string& text, short groupCode);

    const std::string& rootName() const { return m_rootName; }
    const std::string& drawingName() const { return m_drawingName; }
    const std::string& entryName() const { return m_entryName; }
    bool isDirty() const { return m_dirty; }
    // Name of the dictionary under the Named Objects Dictionary: root and drawing name joined.
    std::string dictionaryName() const { return m_rootName + m_drawingName; }

private:
    struct ReleaseRb {
        void operator()(resbuf* rb) const;
    };
    using Value = std::unique_ptr<resbuf, ReleaseRb>;

    bool hasAllNames() const;
    void rename(std::string& field, std::string normalised);
    void reload();
    void load();
    void writeBack();

    std::string m_rootName = "KOVA_";
    std::string m_drawingName;
    std::string m_entryName;
    bool m_dirty = false;
    std::map<std::string, Value> m_values; // byte order of the upper-cased keys
};

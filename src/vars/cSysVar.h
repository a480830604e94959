// cSysVar: one host system variable with its current and its new value, in host form and as text.
#pragma once
#include "adscodes.h"
#include "adsdef.h"

#include <cstdint>
#include <string>

class cSysVarList;

// Bits of cSysVar::flags.
namespace varflag {
inline constexpr std::uint32_t isReadOnly = 0x001;        // the host refuses changes
inline constexpr std::uint32_t isDrawingSpecific = 0x002; // scope is the drawing, else global
inline constexpr std::uint32_t inUserList = 0x004;        // member of the user list
inline constexpr std::uint32_t isSelected = 0x020;        // chosen in the main list
inline constexpr std::uint32_t isMarkedToSet = 0x040;     // to be sent by writeMarkedToHost
inline constexpr std::uint32_t setSucceeded = 0x080;      // the host took the last write
inline constexpr std::uint32_t setFailed = 0x100;         // the host refused the last write
inline constexpr std::uint32_t isUnprobed = 0x200;        // one-time write test still to come
inline constexpr std::uint32_t isUnreadable = 0x400;      // a read failed; never cleared
} // namespace varflag

// The kind of a variable's value, by the codes the host's result buffers carry. A kind the host
// names otherwise keeps its code: such a value has no text, and is neither parsed nor written.
enum class ValueType : short {
    None = RTNONE, // the host has not answered yet
    Real = RTREAL,
    Point2d = RTPOINT,
    Integer = RTSHORT, // 16-bit
    String = RTSTR,
    Point3d = RT3DPOINT,
    LongInt = RTLONG, // 32-bit
};

// Text colours (0x00BBGGRR) of a new value against the current one.
inline constexpr std::uint32_t kColourDiffers = 193; // red 0xC1
inline constexpr std::uint32_t kColourEqual = 49408; // green 0xC1

// Reals, and coordinates whose absolute value reaches this, print in the "%E" form.
inline constexpr double kFixedFormatLimit = 1e10;

class cSysVar {
public:
    // Every real and point is printed and parsed with pointSeparator and valuePrecision of the
    // current document's variable list. A record reads them from owner, the list it stands in:
    // records are only formatted and parsed inside the dialog of their own document, so that list
    // is the current one, and the record needs no way to the frame. The list passes itself when
    // it creates a record; a record in no list uses a blank and 4 places.
    explicit cSysVar(const cSysVarList* owner = nullptr);
    ~cSysVar(); // frees the strings of a string variable
    cSysVar(const cSysVar&) = delete;
    cSysVar& operator=(const cSysVar&) = delete;

    std::uint32_t flags = varflag::isUnprobed;
    std::string name;        // upper case, no blanks at either end
    std::string description; // no blanks at either end
    std::string currentText; // currentValue as text; empty until the first good read
    std::string newText;     // newValue as text; empty: no new value
    cSysVar* next = nullptr; // next record of the list
    ValueType valueType = ValueType::None;
    int themeIndex = 0;              // as the AVL file gave it; need not name a theme of the list
    int sourceLine = 0;              // AVL line that made the record, from 1
    ads_u_val newValue{};            // rstring malloc'ed by the record, or null
    ads_u_val currentValue{};        // rstring as the host handed it over, or null
    std::uint32_t compareColour = 0; // kColourDiffers / kColourEqual; 0 until compared
    const cSysVarList* owner = nullptr;

    // ---- flags ----
    bool isReadOnly() const { return flags & varflag::isReadOnly; }
    void setReadOnly() { flags |= varflag::isReadOnly; }
    bool isDrawingSpecific() const { return flags & varflag::isDrawingSpecific; }
    bool inUserList() const { return flags & varflag::inUserList; }
    void setInUserList() { flags |= varflag::inUserList; }
    void clearInUserList() { flags &= ~varflag::inUserList; }
    bool isSelected() const { return flags & varflag::isSelected; }
    void setSelected() { flags |= varflag::isSelected; }
    void clearSelected() { flags &= ~varflag::isSelected; }
    bool isMarkedToSet() const { return flags & varflag::isMarkedToSet; }
    void setMarkedToSet() { flags |= varflag::isMarkedToSet; }
    void clearMarkedToSet() { flags &= ~varflag::isMarkedToSet; }
    bool setSucceeded() const { return flags & varflag::setSucceeded; }
    void clearSetSucceeded() { flags &= ~varflag::setSucceeded; }
    bool setFailed() const { return flags & varflag::setFailed; }
    void clearSetFailed() { flags &= ~varflag::setFailed; }
    bool isUnprobed() const { return flags & varflag::isUnprobed; }
    void clearUnprobed() { flags &= ~varflag::isUnprobed; }
    bool isUnreadable() const { return flags & varflag::isUnreadable; }

    // ---- operations ----

    // Takes the four fields of an AVL variable line: theme (atoi, not 0), name (trimmed, not
    // empty; the caller has brought it to upper case), marks (left-trimmed, at least two: mode
    // "+" changeable / "-" read-only, then scope "+" drawing / "-" global), description (trimmed).
    // False on the first bad field; the record is then half filled and the caller deletes it.
    bool parseAvlFields(const std::string& themeField, const std::string& nameField,
                        const std::string& modeField, const std::string& descriptionField);

    // acedGetVar: on RTNORM takes type and value over, remakes currentText and compares; else
    // sets isUnreadable and changes nothing else. True when the host answered.
    bool readFromHost();
    // acedSetVar with newValue, only for a record marked to set, with a new text, neither
    // read-only nor unreadable (else false, nothing changes). Sets setSucceeded or setFailed.
    // Leaves isMarkedToSet to the caller.
    bool writeToHost();

    // value as the lists show it: reals and coordinates with valuePrecision places (the "%E" form
    // at or above 1e10 or for NaN), points joined by pointSeparator (a 2D point shows x and y),
    // integers signed, a string in double quotes (a null string writes nothing). Kinds without a
    // text leave out alone and give false.
    bool formatListValue(const ads_u_val& value, std::string& out) const;
    // As formatListValue, but a string stands without quotes.
    void formatEditValue(std::string& out, const ads_u_val& value) const;
    // The edit field's text: of newValue while there is a new text, else of currentValue.
    void editText(std::string& out) const;
    // newText from newValue, compare, set inUserList; the result of formatListValue.
    bool refreshNewText();

    // Typed text for the new value. False for a read-only record and for a point that does not
    // parse; nothing changes then. A real or integer without a number keeps the old new value.
    // An empty text empties newText (flags stay); any other sets inUserList and remakes newText.
    bool applyEditText(const std::string& text);
    // Text from a user list file: as applyEditText, but read-only records take it too,
    // inUserList is set first, an empty string text gives "" and newText is always remade.
    bool applyFileText(const std::string& text);
    // Ends user-list membership and selection, forgets the new value and its text. True.
    bool clearNewValue();

    // Splits point text into at most three tokens at blanks, after "#", ",", ";", ":" and
    // pointSeparator were made blanks. Returns the number of tokens, 0 to 3.
    int splitPointText(std::string& token1, std::string& token2, std::string& token3,
                       const std::string& text) const;

    char pointSeparator() const;
    int valuePrecision() const;

private:
    void compareTexts();
    // Parses text into newValue by valueType; false for a point that fails. forFile selects the
    // user-list-file rules (an empty string text gives an empty string).
    bool parseNewValue(const std::string& text, bool forFile);
    void freeNewString();
    void freeCurrentString();
};

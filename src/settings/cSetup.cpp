// cSetup: typed settings read from and written to an ini file and the drawing at once.
#include "cSetup.h"

#include "CKOVA_DwgIni.h"
#include "ProfileFile.h"

#include <acutads.h>

#include <cstdio>
#include <new>

namespace {

// A value read from the ini file is at most this long, terminator included.
constexpr std::size_t kProfileBufferSize = 512;

void printDwgIniFault(int number) {
    acutPrintf("DwgIni Ausnahmefehler %d\n", number);
}

std::string formatted(const char* format, auto value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

// The typed gets: the text of the key through the virtual GetString, scanned with one format.
template <typename T>
bool scanSetting(cSetup& setup, const std::string& key, const std::string& defaultValue, const char* format,
                 T* number) {
    std::string text;
    setup.GetString(key, defaultValue, text);
    return std::sscanf(text.c_str(), format, number) == 1;
}

} // namespace

cSetup::~cSetup() {
    // A store still open at destruction writes back now; its faults must not escape a destructor.
    try {
        delete m_drawingStore;
    } catch (int number) {
        printDwgIniFault(number);
    }
    m_drawingStore = nullptr;
}

void cSetup::Open(const std::string& file, const std::string& rootName, const std::string& drawingName,
                  const std::string& section, bool useDrawing, bool useFile) {
    m_fileName = file;
    m_activeFileName = file;
    m_section = section;
    m_drawingName = drawingName;
    m_useDrawing = useDrawing;
    m_useFile = useFile;
    m_fileWriteFailed = false;
    Close(); // a store of an earlier Open writes back before it goes
    if (!m_useDrawing)
        return;

    m_drawingStore = new (std::nothrow) CKOVA_DwgIni;
    if (!m_drawingStore)
        return;
    try {
        m_drawingStore->SetRootName(rootName);
        m_drawingStore->SetDrawingName(drawingName);
        m_drawingStore->SetEntryName(section); // the third name reads the drawing
    } catch (int number) {
        printDwgIniFault(number);
    }
}

kova::profile::ProfileFile& cSetup::profile() {
    if (!m_profile || m_profile->file() != m_activeFileName)
        m_profile = std::make_unique<kova::profile::ProfileFile>(m_activeFileName);
    return *m_profile;
}

void cSetup::Close() {
    m_profile.reset();
    CKOVA_DwgIni* store = m_drawingStore;
    m_drawingStore = nullptr;
    try {
        delete store;
    } catch (int number) {
        printDwgIniFault(number);
    }
}

void cSetup::GetFileString(const std::string& key, const std::string& defaultValue, std::string& out) {
    // A key that stands with an empty value gives the empty text, not the default. Read into a
    // buffer of its own: out may be the very string that holds defaultValue.
    std::string buffer;
    profile().getString(m_section, key, defaultValue, buffer, kProfileBufferSize);
    out = std::move(buffer);
}

void cSetup::GetString(const std::string& key, const std::string& defaultValue, std::string& out) {
    out = defaultValue;
    if (m_useFile)
        GetFileString(key, defaultValue, out);
    if (m_useDrawing && m_drawingStore) {
        try {
            std::string stored;
            if (m_drawingStore->Get(key, stored) && !stored.empty())
                out = stored;
        } catch (int number) {
            printDwgIniFault(number);
        }
    }
}

void cSetup::PutString(const std::string& key, const std::string& value, bool toFile) {
    if (m_useFile && toFile && !profile().writeString(m_section, key, value))
        m_fileWriteFailed = true;
    if (m_useDrawing && m_drawingStore) {
        try {
            m_drawingStore->Put(key, value, CKOVA_DwgIni::kTextGroupCode);
        } catch (int number) {
            printDwgIniFault(number);
        }
    }
}

void cSetup::GetFlagWord(const std::string& key, const std::string& defaultValue, std::int32_t& out) {
    int number = 0;
    if (scanSetting(*this, key, defaultValue, "%d", &number))
        out = number;
}

void cSetup::PutFlagWord(const std::string& key, std::int32_t value, bool toFile) {
    PutString(key, formatted("%d", static_cast<int>(value)), toFile);
}

void cSetup::GetBool(const std::string& key, const std::string& defaultValue, bool& out) {
    int number = 0;
    if (scanSetting(*this, key, defaultValue, "%d", &number))
        out = number != 0;
}

void cSetup::PutBool(const std::string& key, bool value, bool toFile) {
    PutString(key, value ? "1" : "0", toFile);
}

void cSetup::GetInt(const std::string& key, const std::string& defaultValue, std::int32_t& out) {
    int number = 0;
    if (scanSetting(*this, key, defaultValue, "%d", &number))
        out = number;
}

void cSetup::PutInt(const std::string& key, std::int32_t value, bool toFile) {
    PutString(key, formatted("%d", static_cast<int>(value)), toFile);
}

void cSetup::GetUnsigned(const std::string& key, const std::string& defaultValue, std::uint32_t& out) {
    unsigned number = 0;
    if (scanSetting(*this, key, defaultValue, "%u", &number))
        out = number;
}

void cSetup::PutUnsigned(const std::string& key, std::uint32_t value, bool toFile) {
    PutString(key, formatted("%u", static_cast<unsigned>(value)), toFile);
}

void cSetup::GetDouble(const std::string& key, const std::string& defaultValue, double& out) {
    double number = 0.0;
    if (scanSetting(*this, key, defaultValue, "%lf", &number))
        out = number;
}

void cSetup::PutDouble(const std::string& key, double value, bool toFile) {
    PutString(key, formatted("%.5lf", value), toFile);
}

void cSetup::GetLong(const std::string& key, const std::string& defaultValue, std::int32_t& out) {
    long number = 0;
    if (scanSetting(*this, key, defaultValue, "%ld", &number))
        out = static_cast<std::int32_t>(number);
}

void cSetup::PutLong(const std::string& key, std::int32_t value, bool toFile) {
    PutString(key, formatted("%ld", static_cast<long>(value)), toFile);
}

bool cSetup::ParseDouble(double& out, const std::string& text) {
    double number = 0.0;
    if (std::sscanf(text.c_str(), "%lf", &number) != 1)
        return false;
    out = number;
    return true;
}

void cSetup::GetAnyBaseInt(const std::string& key, const std::string& defaultValue, std::int32_t& out) {
    int number = 0;
    if (scanSetting(*this, key, defaultValue, "%i", &number))
        out = number;
}

void cSetup::PutAnyBaseInt(const std::string& key, std::int32_t value, bool toFile) {
    PutString(key, formatted("%i", static_cast<int>(value)), toFile);
}

// Fuzz target: any bytes as the chain of the drawing's settings record, read by the drawing store,
// written back, and read again to the same answers.
#include "settings/CKOVA_DwgIni.h"

#include <arxheaders.h>
#include <hostsession.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace {

// The kinds an entry of the chain may have: texts, numbers and points under their group codes
// and host types, and codes the store does not read.
constexpr short kCodes[] = {1, RTSTR, 40, 70, 90, 10, 3, RTPOINT, RT3DPOINT, 1000, 1071, 62, RTREAL};

// Reads n bytes from the input, zero when it is used up.
struct Input {
    const std::uint8_t* data;
    std::size_t size;
    std::size_t at = 0;
    void take(void* out, std::size_t n) {
        std::memset(out, 0, n);
        const std::size_t have = at < size ? std::min(n, size - at) : 0;
        std::memcpy(out, data + at, have);
        at += n;
    }
    std::uint8_t byte() {
        std::uint8_t b;
        take(&b, 1);
        return b;
    }
};

// A chain built from the input; null when it is empty.
resbuf* chainFrom(Input& in) {
    resbuf* head = nullptr;
    resbuf* tail = nullptr;
    while (in.at < in.size) {
        const short code = kCodes[in.byte() % (sizeof kCodes / sizeof kCodes[0])];
        resbuf* rb = acutNewRb(code);
        if (!rb)
            break;
        (tail ? tail->rbnext : head) = rb;
        tail = rb;
        switch (code) {
        case 1:
        case RTSTR:
        case 3:
        case 1000: {
            const std::size_t length = in.byte() % 24;
            std::string text(length, '\0');
            in.take(text.data(), length);
            rb->resval.rstring = strdup(text.c_str()); // a text ends at its first NUL
            break;
        }
        case 40:
        case RTREAL:
            in.take(&rb->resval.rreal, sizeof(double));
            break;
        case 70:
        case 62:
            in.take(&rb->resval.rint, sizeof(short));
            break;
        case 90:
        case 1071:
            in.take(&rb->resval.rlong, sizeof(rb->resval.rlong));
            break;
        default:
            in.take(rb->resval.rpoint, 3 * sizeof(double));
            break;
        }
    }
    return head;
}

// Puts chain as the record KOVA_VARDESKVARDESK/SETTINGS of the working database; false when the
// host refuses it.
bool storeChain(const resbuf* chain) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbDictionary* nod = nullptr;
    if (db->getNamedObjectsDictionary(nod, AcDb::kForWrite) != Acad::eOk)
        return false;
    AcDbObject* object = nullptr;
    AcDbDictionary* dict = nullptr;
    AcDbObjectId id;
    if (nod->getAt("KOVA_VARDESKVARDESK", object, AcDb::kForWrite) == Acad::eOk) {
        dict = static_cast<AcDbDictionary*>(object);
    } else {
        dict = new AcDbDictionary;
        nod->setAt("KOVA_VARDESKVARDESK", dict, id);
    }
    nod->close();
    auto* record = new AcDbXrecord;
    const bool added = dict->setAt("SETTINGS", record, id) == Acad::eOk;
    dict->close();
    const bool set = added && record->setFromRbChain(*chain) == Acad::eOk;
    record->close();
    return set;
}

// What each key of the chain, and one key it may lack, reads as ("<none>" when not found).
std::map<std::string, std::string> answers(CKOVA_DwgIni& store, const resbuf* chain) {
    std::map<std::string, std::string> out;
    auto ask = [&](const std::string& key) {
        std::string text = "<none>";
        store.Get(key, text);
        out[key] = text;
    };
    ask("MAINPOSX");
    for (const resbuf* rb = chain; rb; rb = rb->rbnext)
        if ((rb->restype == 1 || rb->restype == RTSTR) && rb->resval.rstring)
            ask(rb->resval.rstring);
    return out;
}

bool isFuzzKey(const std::string& key) {
    std::string upper = key;
    for (char& c : upper)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return upper == "FUZZ";
}

std::unique_ptr<CKOVA_DwgIni> openStore() {
    auto store = std::make_unique<CKOVA_DwgIni>();
    store->SetRootName("Kova_VarDesk");
    store->SetDrawingName("VarDesk");
    store->SetEntryName("Settings");
    return store;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    cadhost::HostSession& host = cadhost::HostSession::instance();
    host.setOutput([](const std::string&) {});
    host.newDocument();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input in{data, size};
    resbuf* chain = chainFrom(in);
    if (!chain)
        return 0;
    if (!storeChain(chain)) {
        acutRelRb(chain);
        return 0;
    }
    try {
        auto store = openStore();
        const auto before = answers(*store, chain);
        store->Put("FUZZ", "v", 1);
        store.reset(); // writes back
        store = openStore();
        auto after = answers(*store, chain);
        std::string fuzz;
        if (!store->Get("FUZZ", fuzz) || fuzz != "v")
            __builtin_trap();
        // The key the Put added may stand in the chain too, in any case (a get upper-cases its
        // key); every other answer is as before.
        for (const auto& [key, text] : before)
            if (!isFuzzKey(key) && after[key] != text)
                __builtin_trap();
    } catch (int) {
        // A fault the store reports by number; cSetup prints it.
    }
    acutRelRb(chain);
    if (cadhost::HostSession::instance().openObjectCount() != 0)
        __builtin_trap();
    return 0;
}

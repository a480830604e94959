// cDocList: the document contexts of all documents seen, and the pointer to the current one.
#include "cDocList.h"

#include "cDocCntx.h"
#include "cMsgCatalog.h"
#include "vars/TextHelpers.h"

#include <acdocman.h>
#include <acutads.h>

#include <new>

cDocList gDocList;
cDocCntx* gCurDoc = nullptr;

namespace {

// The four name fields of a context from the document's full file name.
void refreshNames(cDocCntx& context, const std::string& path) {
    context.drawingPath = path;
    pathStem(path, context.drawingStem);
    pathFileName(path, context.drawingFileName);
    std::string directory;
    if (pathDirectory(path, directory).empty()) {
        const std::string bare = context.drawingStem;
        pathInWorkingDirectory(bare, context.drawingStem);
    }
    pathStem(context.drawingFileName, context.drawingBaseName);
}

} // namespace

cDocList::~cDocList() {
    clear();
}

void cDocList::clear() {
    cDocCntx* record = first;
    first = nullptr;
    last = nullptr;
    count = 0;
    gCurDoc = nullptr;
    while (record) {
        cDocCntx* following = record->next;
        delete record;
        record = following;
    }
}

cDocCntx* cDocList::find(const AcApDocument* document) const {
    for (cDocCntx* record = first; record; record = record->next)
        if (record->document == document)
            return record;
    return nullptr;
}

void cDocList::ActivateDocument(AcApDocument* document) {
    if (!document) {
        acutPrintf("%s\n", gMsg.TxNoDrawingDocument.c_str());
        gMsg.ShowInfoBox(gMsg.TxNoDrawingDocument);
        return;
    }
    cDocCntx* record = find(document);
    if (!record) {
        try {
            record = new cDocCntx(document);
        } catch (const std::bad_alloc&) {
            acutPrintf("%s\n", gMsg.EtMemoryShortage.c_str());
            gMsg.ShowErrorBox(gMsg.EtMemoryShortage);
            return;
        }
        if (last)
            last->next = record;
        else
            first = record;
        last = record;
        ++count;
    }
    gCurDoc = record;

    const char* fileName = document->fileName();
    if (fileName && *fileName)
        refreshNames(*record, fileName);
}

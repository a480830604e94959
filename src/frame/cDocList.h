// cDocList: the document contexts of all documents seen, and the pointer to the current one.
#pragma once

class AcApDocument;
class cDocCntx;

// Owns one cDocCntx per document met in a document event, in the order they were met. A record
// is matched by the document's pointer alone and stays until the list is destroyed, also after
// its document was closed.
class cDocList {
public:
    cDocList() = default;
    // Deletes every record, first to last, and clears the current context.
    ~cDocList();
    cDocList(const cDocList&) = delete;
    cDocList& operator=(const cDocList&) = delete;

    // Makes the document's record current (creating it at the end of the list when new) and
    // refreshes its name fields from the document's file name when it has one. A null document,
    // or a record that cannot be made, is reported on the command line and in a box, and the
    // current context stays as it was.
    void ActivateDocument(AcApDocument* document);
    // The record of document, or null.
    cDocCntx* find(const AcApDocument* document) const;
    // Deletes every record, first to last; head and tail become null, and so does gCurDoc.
    void clear();

    cDocCntx* first = nullptr;
    cDocCntx* last = nullptr;
    int count = 0;
};

extern cDocList gDocList;
// The context of the document of the last document event; null before the first one.
extern cDocCntx* gCurDoc;

// Error status of database and document operations.
#pragma once

namespace Acad {
enum ErrorStatus {
    eOk = 0,
    eNotImplementedYet = 1,
    eNotApplicable = 2,
    eInvalidInput = 3,
    eOutOfMemory = 5,
    eNullObjectPointer = 8,
    eWasErased = 9,
    eNotOpenForRead = 10,
    eNotOpenForWrite = 11,
    eKeyNotFound = 22,
    eDuplicateKey = 23,
    eInvalidKey = 24,
    eWasOpenForWrite = 80,
    eWasOpenForRead = 81,
    eNoDatabase = 98,
    eLockViolation = 113,
    eNotInDatabase = 124,
};
}

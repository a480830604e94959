// A tiny module for the host tests: it prints every message it gets and defines one command per drawing.
#include "arxheaders.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

constexpr int kTestCommandCode = 7;
// A command whose code throws, as a faulty module might.
constexpr int kThrowingCommandCode = 8;

std::string drawingName() {
    resbuf rb{};
    if (acedGetVar("DWGNAME", &rb) != RTNORM)
        return "<none>";
    std::string name = rb.resval.rstring ? rb.resval.rstring : "";
    std::free(rb.resval.rstring);
    return name;
}

// Left registered on purpose at unload: the host must drop it when the module leaves.
class ForgottenReactor : public AcApDocManagerReactor {
public:
    void documentCreated(AcApDocument*) override { acutPrintf("module reactor: documentCreated\n"); }
};

ForgottenReactor gReactor;

} // namespace

extern "C" __attribute__((visibility("default"))) AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg,
                                                                                  void* appId) {
    switch (msg) {
    case AcRx::kInitAppMsg: {
        auto* linker = static_cast<AcRxDynamicLinker*>(acrxSysRegistry()->at("DynamicLinker"));
        bool unlocked = linker && linker->unlockApplication(appId);
        bool mdi = acrxRegisterAppMDIAware(appId);
        acutPrintf("init unlocked=%d mdi=%d\n", unlocked ? 1 : 0, mdi ? 1 : 0);
#ifdef TEST_MODULE_FAILS_INIT
        return AcRx::kRetError;
#else
        acDocManagerPtr()->addReactor(&gReactor);
        return AcRx::kRetOK;
#endif
    }
    case AcRx::kLoadDwgMsg:
        acutPrintf("loaddwg %s defun=%d\n", drawingName().c_str(), acedDefun("C:TESTCMD", kTestCommandCode));
        acedDefun("C:THROWCMD", kThrowingCommandCode);
        break;
    case AcRx::kUnloadDwgMsg:
        acutPrintf("unloaddwg %s undef=%d\n", drawingName().c_str(),
                   acedUndef("C:TESTCMD", kTestCommandCode));
        break;
    case AcRx::kInvkSubrMsg: {
        if (acedGetFunCode() == kThrowingCommandCode)
            throw std::runtime_error("the module's own fault");
        acutPrintf("invoke %s code=%d\n", drawingName().c_str(), acedGetFunCode());
        resbuf saveTime{};
        saveTime.restype = RTSHORT;
        saveTime.resval.rint = 42; // a global: globals.json must hold it once the command ends
        acedSetVar("SAVETIME", &saveTime);
        acedRetVoid();
        break;
    }
    case AcRx::kUnloadAppMsg:
        acutPrintf("unloadapp\n");
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
}

extern "C" __attribute__((visibility("default"))) int acrxGetApiVersion() {
    return kAcSdkApiVersion;
}

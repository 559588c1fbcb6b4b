#include "app/dde_client.h"

#include <ddeml.h>

namespace {

// All transactions are synchronous; there is nothing to call back for.
HDDEDATA CALLBACK onDde(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) {
    return nullptr;
}

} // namespace

void startDdeClient(Program& program) {
    if (DdeInitializeA(&program.dde, onDde, APPCMD_CLIENTONLY, 0) == DMLERR_NO_ERROR) return;
    program.dde = 0;
    MessageBoxA(program.window, "failed to initialize dde", "error", MB_OK | MB_ICONERROR);
}

void endDdeClient(Program& program) {
    if (program.dde != 0) DdeUninitialize(program.dde);
    program.dde = 0;
}

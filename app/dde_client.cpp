#include "app/dde_client.h"

#include <cstdlib>

#include "app/message_box.h"

namespace {

// All transactions are synchronous; there is nothing to call back for.
HDDEDATA CALLBACK onDde(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) {
    return nullptr;
}

// How long a request may take, in ms. The variable is there for tests, which have less time.
DWORD timeLimit() {
    static const DWORD limit = [] {
        const char* const given = std::getenv("OMBRIVANTEL_DDE_TIMEOUT");
        const unsigned long shortened = given != nullptr ? std::strtoul(given, nullptr, 10) : 0;
        return shortened > 0 ? shortened : 10'000;
    }();
    return limit;
}

bool startInstance(DWORD& instance) {
    instance = 0;
    return DdeInitializeA(&instance, onDde, APPCMD_CLIENTONLY, 0) == DMLERR_NO_ERROR;
}

bool freeString(DWORD instance, HSZ& string) {
    const bool freed = string == nullptr || DdeFreeStringHandle(instance, string) != FALSE;
    string = nullptr;
    return freed;
}

bool isUnderWine() {
    static const bool found = GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    return found;
}

} // namespace

void startDdeClient(Program& program) {
    if (startInstance(program.dde)) return;
    showError(program.window, "failed to initialize dde");
}

void endDdeClient(Program& program) {
    if (program.dde != 0) DdeUninitialize(program.dde);
    program.dde = 0;
}

LinkCode DdeWorkbook::connectWorkbook(const char* path) {
    const DWORD instance = program_.dde;
    if (instance == 0) return LinkCode::notInitialized;
    begun_ = true;
    EnableWindow(program_.window, FALSE);
    DdeGetLastError(instance); // forgets an earlier one
    service_ = DdeCreateStringHandleA(instance, "Excel", CP_WINANSI);
    topic_ = DdeCreateStringHandleA(instance, path, CP_WINANSI);
    // A missing string would stand for any.
    if (service_ != nullptr && topic_ != nullptr) {
        conversation_ = DdeConnect(instance, service_, topic_, nullptr);
    }
    if (conversation_ != nullptr) return LinkCode::done;
    return DdeGetLastError(instance) == DMLERR_NO_ERROR ? LinkCode::done : LinkCode::notLinked;
}

LinkCode DdeWorkbook::requestCell(const char* item, CellReply& reply) {
    if (conversation_ == nullptr) return LinkCode::notInitiated;
    HSZ name = DdeCreateStringHandleA(program_.dde, item, CP_WINANSI);
    const HDDEDATA data =
        DdeClientTransaction(nullptr, 0, conversation_, name, CF_TEXT, XTYP_REQUEST, timeLimit(), nullptr);
    // Wine counts a use of the name with each reply, and some 16,000 names fill its table.
    if (data != nullptr && isUnderWine()) DdeFreeStringHandle(program_.dde, name);
    freeString(program_.dde, name);
    if (data == nullptr) return isConnected() ? LinkCode::noData : LinkCode::notInitiated;

    char bytes[CellReply::size];
    const DWORD count = DdeGetData(data, reinterpret_cast<BYTE*>(bytes), sizeof bytes, 0);
    DdeFreeDataHandle(data);
    putReply(reply, bytes, count);
    return LinkCode::done;
}

LinkCode DdeWorkbook::disconnectWorkbook() {
    if (!begun_) return LinkCode::noService;
    const bool connected = conversation_ != nullptr;
    const bool lost = connected && !isConnected();
    LinkCode code = LinkCode::done;
    if (!freeString(program_.dde, service_)) code = code | LinkCode::serviceKept;
    if (!freeString(program_.dde, topic_)) code = code | LinkCode::topicKept;
    if (connected && DdeDisconnect(conversation_) == FALSE) code = code | LinkCode::notDisconnected;
    // Wine keeps a conversation that the other side has ended and refuses another one about the same
    // workbook; a new client has none.
    if (lost) {
        endDdeClient(program_);
        startInstance(program_.dde);
    }
    conversation_ = nullptr;
    begun_ = false;
    EnableWindow(program_.window, TRUE);
    return connected ? code : LinkCode::noService;
}

// A partner that crashed says no word; its window is gone.
bool DdeWorkbook::isConnected() const {
    CONVINFO info = {};
    info.cb = sizeof info;
    return DdeQueryConvInfo(conversation_, QID_SYNC, &info) != 0 && (info.wStatus & ST_CONNECTED) != 0 &&
           IsWindow(info.hwndPartner) != FALSE;
}

#ifdef _WIN32

#include "batch/threads.h"

#include <process.h>
#include <windows.h>

namespace {

struct Worker {
    PartedWork* work;
    int number;
    HANDLE thread;
};

unsigned __stdcall computeAsWorker(void* argument) {
    const Worker& worker = *static_cast<const Worker*>(argument);
    worker.work->computeAs(worker.number);
    return 0;
}

} // namespace

int machineThreads() {
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    return static_cast<int>(std::clamp<DWORD>(system.dwNumberOfProcessors, 1, mostThreads));
}

ErrorCode computeByThreads(PartedWork& work, int threads) {
    Worker workers[mostThreads];
    int number = 1;
    for (; number < std::min(threads, mostThreads); ++number) {
        Worker& worker = workers[number];
        worker.work = &work;
        worker.number = number;
        // Not CreateThread: the C library keeps its own things for each thread.
        worker.thread =
            reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, computeAsWorker, &worker, 0, nullptr));
        if (worker.thread == nullptr) break;
    }
    const ErrorCode code = work.computeAsFirst();
    while (--number > 0) {
        WaitForSingleObject(workers[number].thread, INFINITE);
        CloseHandle(workers[number].thread);
    }
    return code;
}

#endif

#include "batch/threads.h"

#include <algorithm>

#ifdef _WIN32
#include <process.h>
#include <windows.h>
#else
#include <pthread.h>
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32
using Thread = HANDLE;
#else
using Thread = pthread_t;
#endif

struct Worker {
    PartedWork* work;
    int number;
    Thread thread;
};

void computeAs(const void* argument) {
    const Worker& worker = *static_cast<const Worker*>(argument);
    worker.work->computeAs(worker.number);
}

#ifdef _WIN32

unsigned __stdcall computeOnThread(void* worker) {
    computeAs(worker);
    return 0;
}

// Not CreateThread: the C library keeps its own things for each thread.
bool start(Worker& worker) {
    worker.thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, computeOnThread, &worker, 0, nullptr));
    return worker.thread != nullptr;
}

void waitFor(const Worker& worker) {
    WaitForSingleObject(worker.thread, INFINITE);
    CloseHandle(worker.thread);
}

long processors() {
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    return static_cast<long>(system.dwNumberOfProcessors);
}

#else

void* computeOnThread(void* worker) {
    computeAs(worker);
    return nullptr;
}

bool start(Worker& worker) {
    return pthread_create(&worker.thread, nullptr, computeOnThread, &worker) == 0;
}

void waitFor(const Worker& worker) {
    pthread_join(worker.thread, nullptr);
}

long processors() {
    return sysconf(_SC_NPROCESSORS_ONLN);
}

#endif

} // namespace

int machineThreads() {
    return static_cast<int>(std::clamp<long>(processors(), 1, mostThreads));
}

ErrorCode computeByThreads(PartedWork& work, int threads) {
    Worker workers[mostThreads];
    int number = 1;
    for (; number < std::min(threads, mostThreads); ++number) {
        workers[number].work = &work;
        workers[number].number = number;
        if (!start(workers[number])) break;
    }
    const ErrorCode code = work.computeAsFirst();
    while (--number > 0) waitFor(workers[number]);
    return code;
}

#ifndef _WIN32

#include "batch/threads.h"

#include <pthread.h>
#include <unistd.h>

namespace {

struct Worker {
    PartedWork* work;
    int number;
    pthread_t thread;
};

void* computeAsWorker(void* argument) {
    const Worker& worker = *static_cast<const Worker*>(argument);
    worker.work->computeAs(worker.number);
    return nullptr;
}

} // namespace

int machineThreads() {
    return static_cast<int>(std::clamp<long>(sysconf(_SC_NPROCESSORS_ONLN), 1, mostThreads));
}

ErrorCode computeByThreads(PartedWork& work, int threads) {
    Worker workers[mostThreads];
    int number = 1;
    for (; number < std::min(threads, mostThreads); ++number) {
        Worker& worker = workers[number];
        worker.work = &work;
        worker.number = number;
        if (pthread_create(&worker.thread, nullptr, computeAsWorker, &worker) != 0) break;
    }
    const ErrorCode code = work.computeAsFirst();
    while (--number > 0) pthread_join(workers[number].thread, nullptr);
    return code;
}

#endif

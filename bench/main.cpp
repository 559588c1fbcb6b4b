#include "bench/bench.h"

int main() {
    benchLoading();
    benchWriting(200000, 20);
    benchWriting(1000000, 5);
    benchKendall();
    benchMerging();
    benchEigen();
    benchStepwise();
    return 0;
}

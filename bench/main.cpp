#include "bench/bench.h"

int main() {
    benchLoading();
    benchKendall();
    benchMerging();
    benchEigen();
    return 0;
}

#include "bench/bench.h"

int main() {
    benchLoading();
    benchKendall();
    benchMerging();
    benchEigen();
    benchKinds();
    return 0;
}

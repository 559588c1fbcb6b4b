#include "batch/batch.h"

int main(int count, char** arguments) {
    return runBatch(count, arguments);
}

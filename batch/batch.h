#pragma once

// The batch runner: main() of ombrivantel-batch. Returns its exit status: 0 success, 1 the file or the run
// ended with a code, 2 wrong command line.
int runBatch(int count, char* const* arguments);

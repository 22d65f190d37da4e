#ifndef YH_INDEX_TESTTHREADS_H
#define YH_INDEX_TESTTHREADS_H

// Where the existence tests of an index's stored files run: on worker
// threads beside the reading thread, or on the reading thread alone (for a
// host promised a library that starts no threads).
enum class TestThreads { Workers, CallerOnly };

#endif

// The export mark of the shared library: what carries it is the public API (h/ and the
// platform declarations it needs); everything else is built hidden.
#pragma once

#if defined(_WIN32)
#define PGMDEV_API
#else
#define PGMDEV_API __attribute__((visibility("default")))
#endif

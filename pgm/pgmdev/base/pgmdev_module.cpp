// Module-wide objects constructed when the library loads.
#include "pgm_mem.h"

namespace {
const MEM_INITIALIZER g_memory_initializer("PGMDEV");
}  // namespace

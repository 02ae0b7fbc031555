// Memory bookkeeping hook of the platform: records the module's category, nothing more.
#include "pgm_mem.h"

MEM_INITIALIZER::MEM_INITIALIZER(const char* category) : m_category(category) {}

// Memory bookkeeping hook of the platform; constructed once per module at load.
#pragma once

#include "pgm_api.h"

class PGMDEV_API MEM_INITIALIZER {
 public:
  explicit MEM_INITIALIZER(const char* category);
  const char* category() const { return m_category; }

 private:
  const char* m_category;
};

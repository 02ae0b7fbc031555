// Every platform service the library reaches, in one include.
#pragma once

#include "pgm_api.h"
#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_fio.h"
#include "pgm_msg.h"
#include "pgm_text.h"
#include "pgm_types.h"
#include "pgm_version.h"

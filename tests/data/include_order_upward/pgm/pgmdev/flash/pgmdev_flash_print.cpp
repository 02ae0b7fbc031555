// Fixture: a flash source that reaches up into hps/.
#include "hps/pgmdev_hps_builtin.h"

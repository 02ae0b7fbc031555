// Fixture: the CLI reaching past the public API.
#include "codec/pgmdev_le_codec.h"

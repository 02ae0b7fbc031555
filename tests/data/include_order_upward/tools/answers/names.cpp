// Fixture: the answers reaching the command line of the tool.
#include "cli.h"

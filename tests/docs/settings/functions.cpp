// Functions of a host, with the headers that it has anyhow.
#include <stdlib.h>

#include "vornik/vornik.h"

// block

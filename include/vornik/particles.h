#ifndef VORNIK_PARTICLES_H
#define VORNIK_PARTICLES_H

// Small particle systems whose behaviour the host writes.

#include "vornik/particles/particlesource.h"

#endif

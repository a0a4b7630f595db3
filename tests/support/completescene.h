// A small scene file with every chunk that is read.
#pragma once

#include "tests/support/writer3ds.h"

Scene3ds completeScene();

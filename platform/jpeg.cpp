#include "platform/jpeg.h"

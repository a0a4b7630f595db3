// Texture names, the upload of one frame, and the bind before drawing.

#include "vornik/rasterizer/texture.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "platform/glcontext.h"
#include "rasterizer/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/textures.h"
#include "rasterizer/texturename.h"

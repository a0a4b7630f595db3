#include "apps/vornik/direct3d.h"

std::string startDirect3D(const PictureOptions& /*options*/)
{
    return "this system has no Direct3D";
}

Image drawOnDirect3D(OGroup* /*group*/, View* /*view*/, const PictureOptions& options)
{
    return {options.width, options.height, {}};
}

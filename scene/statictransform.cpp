#include "scene/statictransform.h"

#include "vornik/rasterizer/state.h"
#include "vornik/scene/object.h"

void applyRotationOf(const Object& object)
{
    if (object.rotation.z != 0.0f)
        vrkRotate(object.rotation.z, 0.0f, 0.0f, 1.0f);
    if (object.rotation.y != 0.0f)
        vrkRotate(object.rotation.y, 0.0f, 1.0f, 0.0f);
    if (object.rotation.x != 0.0f)
        vrkRotate(object.rotation.x, 1.0f, 0.0f, 0.0f);
}

void applyStaticTransform(const Object& object)
{
    vrkTranslate(object.position.x, object.position.y, object.position.z);
    vrkTranslate(-object.pivot.x, -object.pivot.y, -object.pivot.z);
    applyRotationOf(object);
    vrkTranslate(object.pivot.x, object.pivot.y, object.pivot.z);
}

#include "apps/vornik/animate.h"

#include <initializer_list>

void showFrame(OGroup* group, int frame, int textureFrame)
{
    group->setCurrentFrame(frame);
    if (!group->activeTList)
        return;
    for (Material* material = group->activeTList->first; material; material = material->next)
        for (Texture* texture : {material->firstTexture, material->secondTexture, material->opacityTexture,
                                 material->reflectionTexture})
            if (texture && texture->frameCount > 1)
                texture->currentFrame = textureFrame % texture->frameCount;
}

// A host in the oldest C++ that the headers allow. It has no files: it makes its objects itself and hands
// them to the engine, which frees them.

#include "vornik/vornik.h"

static Mesh* makeTriangle()
{
    const Vertex3D corners[3] = {{-4.0f, 10.0f, -4.0f}, {4.0f, 10.0f, -4.0f}, {0.0f, 10.0f, 4.0f}};
    Mesh* mesh = new Mesh;
    mesh->setName("Triangle");
    mesh->createVertices(3);
    mesh->createFaces(1);
    for (int i = 0; i < 3; ++i)
    {
        mesh->originalVertices[i] = mesh->calculatedVertices[i] = corners[i];
        mesh->lightColors[i].r = 1.0f;
        mesh->lightColors[i].g = mesh->lightColors[i].b = 0.25f;
    }
    mesh->faces[0].a = 0;
    mesh->faces[0].b = 1;
    mesh->faces[0].c = 2;
    mesh->sortFacesByMaterial();
    return mesh;
}

// Draws a red triangle in front of a camera. @return 0, or the number of the step that went wrong
int drawTriangle(VRKWindow surface)
{
    if (initVornik(0, surface) != 0)
        return 1;

    OGroup* group = new OGroup;
    group->addTList(new TList);
    group->addMesh(makeTriangle());
    Camera* camera = new Camera;
    camera->setName("Eye");
    camera->moveTo(0.0f, 0.0f, 0.0f, 0.0f, 10.0f, 0.0f);
    camera->fov = 60.0f;
    group->addCamera(camera);
    group->applyLights();
    if (group->findObject("Eye") != camera)
        return 2;

    Scene scene;
    scene.groups[scene.groupCount++] = group;
    if (scene.setCamera(group, 0) != 0)
        return 3;
    vrkClear();
    return scene.render(VRK_RENDER_SOLID) == 0 ? 0 : 4;
}

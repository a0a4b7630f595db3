// A host that knows Vornik's installed headers only: loads a scene, draws it off-screen and tells what it
// has.

#include <stdio.h>

#include <vornik/vornik.h>

int main(int argc, char** argv)
{
    const VRKNativeWindow surface = {nullptr, 0, 64, 48};
    if (argc != 2 || initVornik(0, &surface) != 0)
        return 1;
    Scene scene;
    OGroup* group =
        scene.createOGroup(argv[1], LOAD_MESHES | LOAD_CAMERAS | LOAD_MATERIALS, "", 0, nullptr, nullptr);
    if (!group)
        return 2;
    vrkClear();
    if (scene.render(VRK_RENDER_SOLID) != 0)
        return 3;
    printf("meshes %d cameras %d\n", group->meshCount, group->cameraCount);
    return 0;
}

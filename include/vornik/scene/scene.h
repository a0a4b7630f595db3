#ifndef VORNIK_SCENE_SCENE_H
#define VORNIK_SCENE_SCENE_H

// The top object that a host holds: its groups and the camera through which they are seen.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Camera;
class Light;
class OGroup;

/// A store for the host; the engine copies it and reads none of it.
struct VRK_API SceneParams
{
    /// The host's.
    int32_t params0, params1, params2, params3, params4, params5, params6, params7, params8;
    /// The host's.
    uint8_t switch0, switch1, switch2, switch3, switch4, switch5, switch6;
    uint8_t unused; ///< cleared by the constructor

    /// params2 is 15, switch4 to switch6 are 1, the rest 0.
    SceneParams();
};

/// Groups, and the camera through which they are seen.
class VRK_API Scene
{
public:
    int32_t groupCount;      ///< used slots of groups
    OGroup* groups[256];     ///< owned; the used slots come first, without holes
    Camera* camera;          ///< belongs to a group; null when none is set
    SceneParams* parameters; ///< owned

    Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene();

    /// Copies the record into the scene's own. @return 0
    int setParameters(const SceneParams* values);
    /// The live record.
    SceneParams* getParameters();

    /// Makes a group from a file; load flags are LOAD_... bits.
    /// LOAD_CLEAR first deletes every second group of the scene. LOAD_LIGHTING traces its lights.
    /// The scene takes its camera from the group if it has none.
    /// @param materialDirectory  of the images
    /// @param lightFlags  VRK_LIGHT_... bits for LOAD_LIGHTING
    /// @param progress    may be null; called with the fraction done
    /// @param packFile    pack to read from; only with LOAD_FROM_PACK
    /// @return the group, owned by the scene; null when it can't be loaded (logged) or 256 groups exist (not
    /// logged)
    OGroup* createOGroup(const char* file, int flags, const char* materialDirectory, int lightFlags,
                         void (*progress)(float), const char* packFile);
    /// Loads into a group that exists. @return what load3ds returns; 20 for a slot without a group, logged
    int insertMesh(int groupId, const char* file, int flags, const char* materialDirectory,
                   const char* packFile);
    /// The same by pointer. @return what load3ds returns; 20 for a group of another scene, logged
    int insertMesh(OGroup* group, const char* file, int flags, const char* materialDirectory,
                   const char* packFile);

    /// Destroys a group and closes the gap. The camera goes with its group. @return 0 or 20, logged
    int deleteOGroup(OGroup* group);
    /// Slot of a group, the last one if it is listed twice, or -1.
    int getOGID(OGroup* group);
    /// Looks through a camera of a group and sets the field of view. @return 0 or 27, logged
    int setCamera(OGroup* group, int cameraIndex);

    /// Draws all groups through the camera. Logs 24 and draws nothing without one. @return 0
    int render(int flags);
    /// Draws the group in one slot; an empty or missing slot draws nothing. @return 0
    int render(int groupId, int flags);

    /// Draws every image of every group once, so that Direct3D has them in video memory before the first real
    /// frame. Clears and shows a frame on any rasterizer.
    void prepareMaterialsForDX();

    // Ray-traced light over all groups, in lighting/vertexlight.cpp. Writes lightColors only: call
    // OGroup::applyLights on each group to see it.

    /// All lights, then the gamma pass if asked for, then self-illumination. The flags reach the first light
    /// only.
    void calcDynamicLights(int flags);
    /// One light, or one pass, on all meshes of all groups; channels aren't limited.
    void calcDynamicLight(Light* light, int flags);
    /// OGroup::checkRay over all groups.
    bool checkRay(Light* light, Vertex3D* vertex, Vertex3D* offset);
};

#endif

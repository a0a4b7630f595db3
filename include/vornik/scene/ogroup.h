#ifndef VORNIK_SCENE_OGROUP_H
#define VORNIK_SCENE_OGROUP_H

// What one .3DS file becomes: lists of fixed capacity of everything in it.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Camera;
class Light;
class Mesh;
class Object;
class ParticleSource;
class PathList;
class TList;
class octreeNode;

/// Capacities of an OGroup's lists.
enum OGroupCapacity
{
    maxMeshs = 4096,
    maxCameras = 64,
    maxLights = 256,
    maxPaths = 64,
    maxTLists = 64,
    maxParticleSources = 256
};

/// Owns all that its lists hold. Made on the heap. Lists are filled from the front, without holes.
class VRK_API OGroup
{
public:
    /// Used slots of the lists.
    int32_t meshCount, cameraCount, lightCount, tlistCount, pathListCount, particleSourceCount;
    /// Owned.
    ///@{
    Mesh* meshes[maxMeshs];
    Camera* cameras[maxCameras];
    Light* lights[maxLights];
    TList* tlists[maxTLists];
    PathList* pathLists[maxPaths];
    ParticleSource* particleSources[maxParticleSources];
    ///@}
    TList* activeTList;       ///< resolves material numbers at drawing
    PathList* activePathList; ///< what animation reads
    Camera* activeCamera;     ///< recorded only; drawing takes its camera from the caller
    octreeNode* octree;       ///< owned; null until constructOctree
    uint8_t animated;         ///< meshes are placed by their keys
    uint8_t stopAtEnd;        ///< 0: frame numbers wrap; otherwise they stop at the end
    /// Of the animation. The keyframes run from firstFrame to lastFrame; frameCount is the difference.
    int32_t currentFrame, firstFrame, lastFrame, frameCount;

    OGroup();
    OGroup(const OGroup&) = delete;
    OGroup& operator=(const OGroup&) = delete;
    ~OGroup();

    // Each takes ownership and returns 0, or the number of the logged message when the list is full; the
    // object then stays the caller's.
    int addMesh(Mesh* mesh);       ///< 15 when full
    int addLight(Light* light);    ///< 16 when full
    int addCamera(Camera* camera); ///< 17 when full; the first camera becomes activeCamera
    int addTList(TList* list);     ///< 28 when full; becomes activeTList if there is none
    /// 32 when full; becomes activePathList if there is none. The group's frames stay: setActivePathList
    /// takes them over.
    int addPathList(PathList* list);
    int addParticleSource(ParticleSource* source); ///< 40 when full

    // By index. Outside the list counts as an empty slot.
    int setActiveTList(int index);  ///< 36 for an empty slot, logged
    int setActiveCamera(int index); ///< 35 for an empty slot, logged
    /// Takes over the list's frames and end, and gives objects its pivots. @return 0; 34 for an empty slot,
    /// logged
    int setActivePathList(int index);

    /// By exact name, in the order meshes, lights, cameras; the first match wins, null if there is none.
    Object* findObject(const char* name);
    /// By objectId in the same order; -1 finds nothing.
    Object* findObject(int id);

    /// Destroys all contents. animated and stopAtEnd stay. @return 0
    int clear();

    /// Removes and destroys a mesh and its paths; of two neighbouring paths the second stays.
    /// @return 0, 38 (null) or 39 (not in this group), logged
    int delMesh(Mesh* mesh);

    /// Builds the octree that the queries ask, from the visible meshes as they stand now. A tree that is
    /// there already is not released: a host that builds another one deletes it first.
    /// @return 0; 44 without meshes, logged
    int constructOctree();

    /// Scales the whole group, tracks, lights and cameras' eyes included, so that a known object gets a
    /// wanted size, and builds the octree anew. Targets of cameras and originalVertices stay.
    /// @param reference  hidden from then on; without any extent nothing is scaled
    /// @param size       of the largest side, along an axis, of its largest face
    void adjustSize(Mesh* reference, float size);

    /// Gives a group of the same geometry this group's material assignment. The TLists are then shared, and
    /// owned twice: keep one group alive, mind the order of deletion, and call setActiveTList on the target.
    /// @return 0; 26 (null target), 38 (no mesh of a name), 50 (other counts), logged
    int copyMaterialFaceStructures(OGroup* target);

    /// Closes cracks: vertices of the first mesh that lie within percent of the group's longest axis of one
    /// another take one position. Where no axis is strictly longest the distance is percent itself. About
    /// linear in the vertices.
    void closeCombine(float percent);

    /// @param mesh  may be null; then nothing happens
    void markAttach(bool mark, Mesh* mesh);
    /// Replaces marked meshes by one named "AttachedObject". Faces keep their indices, so they refer to the
    /// first vertices of the block; of consecutive marked meshes every second one stays.
    void attach();

    /// Fills the group from a file. Bit LOAD_CLEAR clears it first. @return 0, also when the load failed
    int load(const char* file, int flags, const char* materialDirectory);

    /// Pins an animated object: its first tracks in the active list keep one key each, of these values.
    /// @param position  null leaves the position track as it is
    /// @param rotation  axis in x, y, z, angle in w, degrees; null leaves the rotation track as it is
    void overrideObjectPosition(const char* name, const Vertex3D* position, const Vertex4D* rotation);

    // Animation, in animation/ogroupanimation.cpp: the tracks of activePathList at currentFrame, linear
    // between keys.

    /// Chooses the frame: wrapped by frameCount with its sign, or with stopAtEnd one below frameCount when it
    /// is above.
    void setCurrentFrame(int frame);
    /// Sets eye, roll and target by the camera's tracks.
    void doCameraAnim(Camera* camera);
    /// Multiplies the rasterizer's matrix by one object's tracks and own rotation. Only where object is self
    /// does its pivot come off. @return has it a rotation track?
    bool doObjectAnim(Object* object, Object* self);
    /// The same for the whole hierarchy, root first. @return 0; 34 without an active list, logged
    int doAnimation(Object* object, Object* self);
    /// transformedVertices in world coordinates, animated or static as the group is.
    void transformVertices(Mesh* mesh);
    /// The object's matrix alone. @param matrix  [16], out
    void getObjectAnimatedMatrix(Object* object, float* matrix);
    /// What window coordinates need, under the view that the caller has set.
    /// @param modelView, projection  [16], out. @param viewport  [4], out
    void getObjectAnimatedMatrixWithCamera(Object* object, float* modelView, float* projection,
                                           int* viewport);
    /// Steps every texture of the active materials that has frames. @return 0
    int animateTextures();

    // Drawing, in grouprender.cpp. The caller has set the view.

    /// Draws all meshes. @param flags  VRK_RENDER_... bits; taken as 0 for a null camera. @return 0
    int render(int flags, Camera* camera);
    /// Draws one mesh. @return 0, 38 (null) or 39 (not a mesh of this group), logged
    int renderObject(Object* object, int flags);

    // Ray-traced light, in lighting/vertexlight.cpp. flags are VRK_LIGHT_... bits.

    /// All lights of the group and then applyLights. The flags reach the first light only.
    void calcDynamicLights(int flags);
    /// Adds one light to lightColors of all meshes, each channel kept within 0 to 1.
    void calcDynamicLight(Light* light, int flags);
    /// Does the light reach vertex + offset? Only faces whose front looks at the light block, by their
    /// centroid's distance, and never one that shares an x, y or z with the vertex.
    bool checkRay(Light* light, Vertex3D* vertex, Vertex3D* offset);
    /// vertexColors from lightColors with the gamma; alpha stays.
    void applyLights();
    /// Writes lightColors of all meshes, 16 bytes a vertex, without a header. Silent on failure.
    void saveLights(const char* fileName);
    /// Reads what saveLights wrote; what is missing in the file stays as it was.
    void loadLights(const char* fileName);
};

#endif

#ifndef VORNIK_SCENE_MESH_H
#define VORNIK_SCENE_MESH_H

// The polygon object: parallel packed arrays by vertex and by face, as the graphics library takes them.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"
#include "vornik/scene/object.h"

class D3DMesh;
class TList;

/// One range of faces with one material; both ends inclusive.
struct MaterialFaceRange
{
    /// Indices of faces.
    int32_t first, last;
};

/// The ranges of a mesh. The material of a range is that of its first face.
struct MaterialFaceList
{
    int32_t count;             ///< of ranges
    MaterialFaceRange* ranges; ///< [count], owned, a malloc block
};

/// A polygon object. What a host writes into its arrays is drawn as it is.
class VRK_API Mesh : public Object
{
public:
    D3DMesh* d3dMesh;              ///< rasterizer 1's own form; owned
    Vertex3D* originalVertices;    ///< [vertexCount], owned; as loaded, relative to position after center()
    Vertex3D* calculatedVertices;  ///< [vertexCount], owned; what drawing, lighting and queries read
    Vertex3D* transformedVertices; ///< [vertexCount], owned; world positions
    Vertex2D* textureCoords;       ///< [vertexCount], owned
    Vertex3D* originalNormals;     ///< [vertexCount], owned; unit length
    Vertex3D* calculatedNormals;   ///< [vertexCount], owned; what drawing and lighting read
    EdgeNormal* edgeNormals;       ///< [faceCount], owned; used by collision
    Facelist* faces;               ///< [faceCount], owned; counter-clockwise seen from the front
    Textlist* faceMaterials;       ///< [faceCount], owned
    uint32_t*
        smoothingGroups; ///< [faceCount], owned; faces smooth together only where the whole value is equal
    Color* lightColors;  ///< [vertexCount], owned; light gathered by the lighting pass
    Color* vertexColors; ///< [vertexCount], owned; colours drawn; the passes write alpha
    MaterialFaceList* materialFaces; ///< owned; null until sortFacesByMaterial, and then nothing is drawn
    uint8_t* faceFlags;              ///< [faceCount], owned; edges that wire drawing shows
    uint32_t displayList;            ///< OpenGL list of the solid pass
    uint32_t transparentDisplayList; ///< OpenGL list of the immediate transparent pass
    uint8_t attachMark;              ///< merged by OGroup::attach
    uint8_t billboard;               ///< turned with the camera by OGroup::render
    int32_t vertexCount;             ///< used entries of the arrays by vertex
    int32_t faceCount;               ///< used entries of the arrays by face
    int32_t virtualVertexCount;      ///< for hosts that keep spare room; see minimizeVirtualTriangleCount
    int32_t virtualFaceCount;        ///< the same for faces
    float radius;                    ///< from the local origin to the farthest calculated vertex

    Mesh();
    Mesh(const Mesh&) = delete;
    Mesh& operator=(const Mesh&) = delete;
    ~Mesh();

    /// Allocates all arrays by vertex, cleared, and releases the old ones. @param n  below 0 counts as 0
    void createVertices(int n);
    /// Releases the arrays by vertex; vertexCount stays.
    void destroyVertices();
    /// Allocates all arrays by face, cleared; each face is its own smoothing group.
    void createFaces(int n);
    /// Releases the arrays by face except faceFlags; faceCount stays.
    void destroyFaces();

    /// Groups the faces by material, in order of first appearance, and builds materialFaces. faces and
    /// faceMaterials move; smoothingGroups, faceFlags and edgeNormals keep the old order. Linear in the
    /// faces.
    void sortFacesByMaterial();

    /// Splits vertices along the borders of smoothing groups, since a vertex has one normal. Gives up on a
    /// mesh with a vertex of more than 512 faces. Call before calcNormals. Linear in vertices and faces.
    void prepareSmoothing();

    /// Moves originalVertices so that their bounding box is centred on the origin; position takes the old
    /// centre. pivot and calculatedVertices stay as they are: call originalToCalculated() next.
    void center();
    /// Adds position to both vertex arrays and clears it.
    void restoreToWorldCoordinates();

    /// originalNormals from originalVertices: the average of the unit normals of the faces around each
    /// vertex. A vertex without faces keeps what it had. Linear in vertices and faces.
    void calcNormals();
    /// edgeNormals from the faces' world positions. Uses the rasterizer's matrix stack.
    void calcEdgeNormals();
    /// radius from calculatedVertices.
    void calcRadius();
    /// Copies positions and normals to the calculated arrays.
    void originalToCalculated();
    /// Overwrites calculatedVertices with window coordinates of originalVertices. gluProject.
    void calcWindowCoords();

    /// Vertex i in world coordinates by the static transform: position, -pivot, rotation z, y, x, pivot.
    /// @param i  (0, 0, 0) is the answer outside the array
    Vertex3D calculatedVertex(int i);
    /// The same with the normal, rotated and not renormalised. @param vertex, normal  [out]
    void calculatedVertex(int i, Vertex3D* vertex, Vertex3D* normal);

    /// Grows the arrays in place, new entries cleared; smaller numbers do nothing. edgeNormals keeps its
    /// size.
    void expandObject(int vertices, int faces);
    /// Trims the arrays to vertexCount and faceCount where the virtual counts are larger.
    void minimizeVirtualTriangleCount();

    /// A copy with arrays of its own, which shares name, d3dMesh and display lists. smoothingGroups,
    /// edgeNormals and transformedVertices are fresh. The caller owns it.
    Object* copyObject();

    // Drawing, in meshrender.cpp. flags are VRK_RENDER_... bits, list resolves the material numbers, and the
    // model matrix stands on the rasterizer's stack. A mesh without materialFaces draws nothing. All return 0
    // unless said otherwise, and leave: culling on, texturing on, smooth, depth test less-or-equal, depth
    // writes on.

    /// Runs the passes that the flags select.
    int render(int flags, TList* list);
    /// The opaque ranges, each with its reflection.
    int renderNonTransparent(int flags, TList* list);
    /// Queues the transparent ranges on the stack of vrkDrawTransparentPlanes, with the material's
    /// transparency as the alpha of their corners. Reads no flags.
    int renderTransparent(int flags, TList* list);
    /// The transparent ranges, unsorted, in face order. Leaves blending on, or off behind a reflection.
    int renderTransparentImmediately(int flags, TList* list);
    /// The opaque ranges once more on top of themselves, under the host's blend function.
    int renderEffect(int flags, TList* list);

    /// The glow sprite of a mesh of setSpecial(1), of which the first vertex is the place and the first
    /// face's material the image: 100 by 100 pixels, added to what is there. It comes up within a second and
    /// goes within half a second of being hidden, by the frame rate of vrkSetFPS; off the window it is gone
    /// at once. Overwrites calculatedVertices with window coordinates. Leaves the model-view matrix the
    /// identity and the blend function VRK_SRC_ALPHA, VRK_ONE. Reads no flags.
    int renderSpecial(int flags, TList* list);

    /// Takes two list names from OpenGL. @return 0 or 43, logged
    int createDisplayList();
    /// Gives both names back.
    void destroyDisplayList();

private:
    // The matrix behind calculatedVertex, with what it was built from.
    struct WorldMatrix
    {
        double elements[16];
        Vertex3D position, pivot;
        Vertex4D rotation;
        int32_t rasterizer;
        const void* context;
        bool built;
    };
    WorldMatrix worldMatrix;

    const double* currentWorldMatrix();
    void detachArrays();

    friend class WorldCorners; // many vertices through one matrix
};

#endif

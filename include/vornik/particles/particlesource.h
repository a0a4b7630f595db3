#ifndef VORNIK_PARTICLES_PARTICLESOURCE_H
#define VORNIK_PARTICLES_PARTICLESOURCE_H

// Particles: the engine keeps, moves and draws them; a function of the host decides what each one starts as.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Camera;
class Material;
class Mesh;
class TList;

/// Motion is per update, so speeds are per frame.
struct Particle
{
    Vertex3D position; ///< world
    Vertex3D rotation; ///< degrees about x, y, z; draw() writes the camera's angles into x and z of a quad
    float spare;       ///< the host's own
    Vertex3D velocity; ///< added to position
    Vertex3D acceleration; ///< added to velocity
    Vertex3D spin;         ///< added to rotation
    int32_t life;          ///< updates left; dead at 0 and below
    int32_t maxLife;       ///< what life began with; the host sets it for the fade and the texture's frame
};

/// The host calls update() and draw() once a frame; an OGroup that holds a source only destroys it.
class VRK_API ParticleSource
{
public:
    Particle* particles; ///< [particleCount], a malloc block, owned; null until initParticles
    /// As given to initParticles.
    int32_t particleCount;
    /// Of the quads; owned. Sources may share one, which goes with the last of them; one that is in a TList
    /// goes with the list, and the sources that have it are then without.
    Material* material;
    Mesh* mesh;               ///< drawn for each particle in place of a quad; may be null; not owned
    TList* tlist;             ///< the mesh's materials; not owned
    Color color;              ///< of the quads; its alpha isn't used
    Vertex3D position;        ///< where the source stands, for the host's functions
    Vertex3D direction;       ///< for the host's functions
    int32_t lifeTimer;        ///< updates until active is cleared; the particles go on
    int32_t blendSource;      ///< VRKConstant, VRK_ONE until set
    int32_t blendDestination; ///< the same
    float alpha;              ///< of the quads unless they fade
    float size;               ///< half the side of a quad
    uint8_t fadeWithLife;     ///< alpha is life / maxLife
    void (*initFunction)(ParticleSource*, Particle*); ///< required; makes a dead particle live again
    void (*updateFunction)(ParticleSource*);          ///< replaces the engine's motion; may be null
    uint8_t active; ///< the host's own; cleared by every update() that finds lifeTimer run out

    ParticleSource();
    ParticleSource(const ParticleSource&) = delete;
    ParticleSource& operator=(const ParticleSource&) = delete;
    ~ParticleSource();

    /// Makes the array, all zero and so all dead. Nothing if count is below 1, if there is an array already,
    /// or if memory doesn't suffice.
    void initParticles(int count);
    /// Releases the array, and destroys the material unless it has another owner. particleCount stays.
    void freeParticles();

    /// Takes over what is given; null pointers and blend factors of 0 leave their field as it is.
    /// @param material  owned from now on; an earlier one is the caller's again
    /// @param alpha, size, fadeWithLife  always stored
    /// @param initFunction  given a particle, or null by initOne(nullptr) with none alive
    /// @return 0, or 45 for a null initFunction, logged, with nothing stored
    int initSource(const Vertex3D* position, const Vertex3D* direction, Material* material,
                   const Color* color, Mesh* mesh, TList* tlist, float size, float alpha, int blendSource,
                   int blendDestination, void (*initFunction)(ParticleSource*, Particle*),
                   void (*updateFunction)(ParticleSource*), bool fadeWithLife);
    /// Hands a particle to initFunction. @param particle  null takes the first living one
    void initOne(Particle* particle);

    /// One frame: the living move, by velocity after acceleration; the dead go to initFunction. Neither
    /// active nor lifeTimer stops that. With an updateFunction it does all of this instead.
    void update();

    /// Draws the living, blended, without writing depth. Replaces the model-view matrix by the camera's view.
    /// An animated texture shows one frame for the whole source, by the age of particle 0. Without a texture
    /// OpenGL keeps the one bound last. Leaves depth test less-or-equal, depth writes on, smooth shading and
    /// the blend factors; what else it switched is switched back.
    /// @param camera  its rotation turns the quads, so keep it in step with eye and target, in the sense of
    ///                targetFromRotation; what rotationFromTarget finds needs 180 degrees more heading. Null
    ///                is logged (24) and leaves the identity as view and the quads' angles as they are
    void draw(Camera* camera);
};

#endif

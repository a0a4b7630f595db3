// Simulation and drawing of particles.
//
// On OpenGL a quad is turned to the viewer by the camera's own angles, so the view matrix is never read back;
// Direct3D has its view at hand. Nothing here allocates but the array itself and the list of living sources.

#include "vornik/particles/particlesource.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "assets/livinglists.h"
#include "particles/livingsources.h"
#include "rasterizer/constants.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/packedcolor.h"
#include "vornik/assets/texture.h"
#include "vornik/core/errorlog.h"
#include "vornik/core/matrices.h"
#include "vornik/core/memory.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/renderflags.h"

// All sources that exist, to see who else has a material. Never destroyed, since sources may be static
// objects of the host.
static std::vector<ParticleSource*>& livingSources()
{
    static std::vector<ParticleSource*>& sources = *new std::vector<ParticleSource*>;
    return sources;
}

ParticleSource::ParticleSource()
    : particles(nullptr), particleCount(0), material(nullptr), mesh(nullptr),
      tlist(nullptr), color{1.0f, 1.0f, 1.0f, 1.0f}, position{0.0f, 0.0f, 0.0f}, direction{0.0f, 0.0f, 0.0f},
      lifeTimer(0), blendSource(VRK_ONE), blendDestination(VRK_ONE), alpha(1.0f), size(1.0f), fadeWithLife(0),
      initFunction(nullptr), updateFunction(nullptr), active(0)
{
    livingSources().push_back(this);
}

ParticleSource::~ParticleSource()
{
    freeParticles();
    std::erase(livingSources(), this);
}

void ParticleSource::initParticles(int count)
{
    if (count < 1 || particles)
        return;
    particles = static_cast<Particle*>(std::calloc(static_cast<size_t>(count), sizeof(Particle)));
    if (particles)
        particleCount = count;
}

static bool hasAnySource(const Material* material)
{
    const std::vector<ParticleSource*>& sources = livingSources();
    return std::any_of(sources.begin(), sources.end(),
                       [material](const ParticleSource* source) { return source->material == material; });
}

void forgetMaterial(const Material* material)
{
    for (ParticleSource* source : livingSources())
        if (source->material == material)
            source->material = nullptr;
}

void ParticleSource::freeParticles()
{
    vrkFree(reinterpret_cast<char**>(&particles));
    const Material* released = material;
    material = nullptr;
    if (!hasAnySource(released) && !isInAnyList(released))
        delete released;
}

int ParticleSource::initSource(const Vertex3D* newPosition, const Vertex3D* newDirection,
                               Material* newMaterial, const Color* newColor, Mesh* newMesh, TList* newTList,
                               float newSize, float newAlpha, int newBlendSource, int newBlendDestination,
                               void (*newInitFunction)(ParticleSource*, Particle*),
                               void (*newUpdateFunction)(ParticleSource*), bool newFadeWithLife)
{
    if (!newInitFunction)
        return vrkPutToErrorLog("Cannot initialize particlesource because given functionpointer is NULL!",
                                45);
    initFunction = newInitFunction;
    if (newUpdateFunction)
        updateFunction = newUpdateFunction;
    if (newPosition)
        position = *newPosition;
    if (newDirection)
        direction = *newDirection;
    if (newColor)
        color = *newColor;
    if (newMaterial)
        material = newMaterial;
    if (newMesh)
        mesh = newMesh;
    if (newTList)
        tlist = newTList;
    alpha = newAlpha;
    size = newSize;
    if (newBlendSource != 0)
        blendSource = newBlendSource;
    if (newBlendDestination != 0)
        blendDestination = newBlendDestination;
    fadeWithLife = newFadeWithLife;
    return 0;
}

void ParticleSource::initOne(Particle* particle)
{
    // A living one, not a free one: what becomes of it is the host's function's business.
    for (int i = 0; !particle && particles && i < particleCount; ++i)
        if (particles[i].life > 0)
            particle = &particles[i];
    if (initFunction)
        initFunction(this, particle);
}

static void move(Particle& particle)
{
    --particle.life;
    particle.velocity += particle.acceleration;
    particle.position += particle.velocity;
    particle.rotation += particle.spin;
}

void ParticleSource::update()
{
    if (lifeTimer > 0)
        --lifeTimer;
    if (lifeTimer <= 0)
    {
        lifeTimer = 0;
        active = 0;
    }
    if (updateFunction)
    {
        updateFunction(this);
        return;
    }
    // The host's function may release the array or make another one.
    for (int i = 0; particles && i < particleCount; ++i)
    {
        if (particles[i].life > 0)
            move(particles[i]);
        else
            initOne(&particles[i]);
    }
}

static Texture* textureOf(const ParticleSource& source)
{
    return source.material ? source.material->firstTexture : nullptr;
}

// The frame of a texture for a particle's age; the last one for a particle that doesn't know its full life.
static int frameByAge(const Particle& particle, int frameCount)
{
    if (particle.maxLife == 0)
        return frameCount - 1;
    const float age = static_cast<float>(int64_t(particle.maxLife) - particle.life);
    const float frame = age / static_cast<float>(particle.maxLife) * static_cast<float>(frameCount);
    return frame < static_cast<float>(frameCount) ? truncated(frame) : frameCount - 1;
}

static void bindTexture(const ParticleSource& source)
{
    Texture* texture = textureOf(source);
    if (!texture)
    {
        // Takes the texture away on Direct3D. OpenGL refuses it, and the texture bound last stays in force.
        vrkDisable(VRK_TEXTURE);
        return;
    }
    if (source.particles && source.particleCount > 0)
        texture->currentFrame = frameByAge(source.particles[0], texture->frameCount);
    vrkSetTexture(texture);
}

static void beginDrawing(const ParticleSource& source)
{
    vrkPushAttrib(VRK_ENABLE_BIT);
    vrkShadeModel(VRK_FLAT);
    vrkEnable(VRK_BLEND);
    vrkBlendFunc(source.blendSource, source.blendDestination);
    vrkDepthFunc(VRK_LEQUAL);
    vrkDepthMask(VRK_FALSE);
    vrkDisable(VRK_CULL_FACE);
    vrkDisable(VRK_ALPHA_TEST);
    vrkEnable(VRK_TEXTURE); // refused by OpenGL: quads are textured or not as the host has left it
}

static void endDrawing()
{
    vrkPopAttrib();
    vrkShadeModel(VRK_SMOOTH);
    vrkDepthMask(VRK_TRUE);
}

static void rotateIfTurned(float degrees, float x, float y, float z)
{
    if (degrees != 0.0f)
        vrkRotate(degrees, x, y, z);
}

static void drawMesh(const ParticleSource& source, const Particle& particle)
{
    rotateIfTurned(particle.rotation.z, 0.0f, 0.0f, 1.0f);
    rotateIfTurned(particle.rotation.y, 0.0f, 1.0f, 0.0f);
    rotateIfTurned(particle.rotation.x, 1.0f, 0.0f, 0.0f);
    source.mesh->render(VRK_RENDER_BASIC | VRK_RENDER_SOLID, source.tlist);
}

// Counter-clockwise from the lower left, which is also where the texture begins.
static void drawQuad(const ParticleSource& source, float alpha)
{
    static const float corners[4][2] = {{0.0f, 0.0f}, {1.0f, 0.0f}, {1.0f, 1.0f}, {0.0f, 1.0f}};
    const bool textured = textureOf(source) != nullptr;
    const float size = source.size;
    glBegin(GL_QUADS);
    glColor4f(source.color.r, source.color.g, source.color.b, alpha);
    for (const auto& [u, v] : corners)
    {
        if (textured)
            glTexCoord2f(u, v);
        glVertex3f(u == 0.0f ? -size : size, v == 0.0f ? -size : size, 0.0f);
    }
    glEnd();
}

static float alphaOf(const ParticleSource& source, const Particle& particle)
{
    if (!source.fadeWithLife)
        return source.alpha;
    if (particle.maxLife == 0)
        return 1.0f;
    return static_cast<float>(particle.life) / static_cast<float>(particle.maxLife);
}

static void drawParticle(const ParticleSource& source, Particle& particle, const Camera* camera)
{
    vrkPushMatrix();
    vrkTranslate(particle.position.x, particle.position.y, particle.position.z);
    if (source.mesh)
        drawMesh(source, particle);
    else
    {
        // Pitch about x, then heading about z, as the camera is turned itself.
        if (camera)
        {
            particle.rotation.x = camera->rotation.y;
            particle.rotation.z = camera->rotation.x;
        }
        rotateIfTurned(particle.rotation.z, 0.0f, 0.0f, 1.0f);
        rotateIfTurned(particle.rotation.x, 1.0f, 0.0f, 0.0f);
        drawQuad(source, alphaOf(source, particle));
    }
    vrkPopMatrix();
}

static void beginDirect3D(D3DRasterizer& d3d, const ParticleSource& source)
{
    vrkShadeModel(VRK_FLAT);
    vrkBlendFunc(source.blendSource, source.blendDestination);
    vrkEnable(VRK_BLEND);
    vrkDepthFunc(VRK_LEQUAL);
    vrkDepthMask(VRK_FALSE);
    vrkDisable(VRK_CULL_FACE);
    d3d.setColorStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    d3d.setAlphaStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    Texture* texture = textureOf(source);
    if (texture && source.particles && source.particleCount > 0)
        texture->rotation = source.particles[0].rotation.y;
    bindTexture(source);
}

static void endDirect3D()
{
    vrkShadeModel(VRK_SMOOTH);
    vrkDepthMask(VRK_TRUE);
    vrkEnable(VRK_CULL_FACE);
}

// The view turned round: its rotation turns a quad to the viewer.
static void facingMatrix(D3DRasterizer& d3d, float (&facing)[4][4])
{
    float view[4][4];
    std::memcpy(view, d3d.viewMatrix, sizeof view);
    std::memcpy(facing, d3d.viewMatrix, sizeof facing);
    vrkInvertMatrix(facing, view);
}

static void drawOnDirect3D(D3DRasterizer& d3d, const ParticleSource& source)
{
    float facing[4][4];
    facingMatrix(d3d, facing);
    beginDirect3D(d3d, source);
    const float s = source.size;
    D3DWorldVertex quad[] = {{-s, s, 0.0f, 0, 0.0f, 1.0f},
                             {-s, -s, 0.0f, 0, 0.0f, 0.0f},
                             {s, s, 0.0f, 0, 1.0f, 1.0f},
                             {s, -s, 0.0f, 0, 1.0f, 0.0f}};
    for (int i = 0; source.particles && i < source.particleCount; ++i)
    {
        const Particle& particle = source.particles[i];
        if (particle.life <= 0)
            continue;
        if (source.mesh)
        {
            vrkPushMatrix();
            vrkTranslate(particle.position.x, particle.position.y, particle.position.z);
            drawMesh(source, particle);
            vrkPopMatrix();
            continue;
        }
        facing[3][0] = particle.position.x;
        facing[3][1] = particle.position.y;
        facing[3][2] = particle.position.z;
        d3d.setWorldMatrix(facing);
        Color color = {source.color.r, source.color.g, source.color.b, alphaOf(source, particle)};
        const uint32_t word = packLimited(&color);
        for (D3DWorldVertex& corner : quad)
            corner.color = word;
        d3d.drawStrip(quad);
    }
    endDirect3D();
}

void ParticleSource::draw(Camera* camera)
{
    vrkInitMatrix();
    vrkLookWithCamera(camera);
    if (vrkGetRasterizer() == 0)
    {
        beginDrawing(*this);
        bindTexture(*this);
        for (int i = 0; particles && i < particleCount; ++i)
            if (particles[i].life > 0)
                drawParticle(*this, particles[i], camera);
        endDrawing();
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        drawOnDirect3D(*d3d, *this);
}

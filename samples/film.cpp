// A host that plays the sample: the flight over the harbour, with smoke from a particle source of its own.
//
// usage: make_film SCENE.3DS FILM.apng

#include <cstdio>
#include <cstdlib>
#include <random>

#include "apps/vornik/render.h"
#include "vornik/vornik.h"

enum
{
    puffSide = 32, // texels
    puffCount = 60,
    warmUp = 80 // updates after which the column of smoke stands
};

// A thin white ball whose edge fades out.
static Material* makePuff()
{
    Texture* texture = new Texture;
    texture->setFilename("Smoke", 0);
    texture->width = texture->height = puffSide;
    texture->wrap = false;
    texture->bitsPerTexel = 32;
    texture->pixels = static_cast<uint8_t*>(std::malloc(puffSide * puffSide * 4));
    for (int i = 0; i < puffSide * puffSide; ++i)
    {
        const int column = i % puffSide, row = i / puffSide;
        const float x = (static_cast<float>(column) + 0.5f) / (static_cast<float>(puffSide) * 0.5f) - 1;
        const float y = (static_cast<float>(row) + 0.5f) / (static_cast<float>(puffSide) * 0.5f) - 1;
        const float height = 1 - (x * x + y * y);
        texture->pixels[i * 4] = texture->pixels[i * 4 + 1] = texture->pixels[i * 4 + 2] = 255;
        texture->pixels[i * 4 + 3] = static_cast<uint8_t>(height > 0 ? 95 * height * height : 0);
    }
    texture->uploadTexture(0);
    Material* material = new Material;
    material->addFirstTexture(texture);
    return material;
}

static float anyOf(float low, float high)
{
    static std::minstd_rand random(1);
    return low + (high - low) * static_cast<float>(random() - random.min()) /
                     static_cast<float>(random.max() - random.min());
}

// Puffs start over the chimney one after the other and drift off with the wind.
static void startPuff(ParticleSource* source, Particle* puff)
{
    if (!puff)
        return;
    const float scale = source->size;
    puff->position = source->position;
    puff->position.x += anyOf(-0.3f, 0.3f) * scale;
    puff->position.y += anyOf(-0.3f, 0.3f) * scale;
    puff->velocity = source->direction;
    puff->velocity.x += anyOf(-0.02f, 0.02f) * scale;
    puff->velocity.y += anyOf(-0.02f, 0.02f) * scale;
    puff->acceleration = {0.0022f * scale, 0.0010f * scale, 0};
    puff->maxLife = static_cast<int32_t>(anyOf(50, 90));
    // The first ones are of all ages, so that the column doesn't come in one burst.
    puff->life = puff->spare == 0 ? static_cast<int32_t>(anyOf(1, 60)) : puff->maxLife;
    puff->spare = 1;
}

static ParticleSource* makeSmoke(OGroup* group)
{
    Object* chimney = group->findObject("Chimney");
    if (!chimney)
        return nullptr;
    ParticleSource* smoke = new ParticleSource;
    const float size = static_cast<Mesh*>(chimney)->radius * 0.4f;
    Vertex3D place = chimney->position;
    place.z += static_cast<Mesh*>(chimney)->radius;
    const Vertex3D up = {0, 0, 0.14f * size};
    const Color grey = {0.82f, 0.76f, 0.74f, 1};
    smoke->initParticles(puffCount);
    smoke->initSource(&place, &up, makePuff(), &grey, nullptr, nullptr, size, 0.5f, VRK_SRC_ALPHA,
                      VRK_ONE_MINUS_SRC_ALPHA, startPuff, nullptr, true);
    for (int i = 0; i < warmUp; ++i)
        smoke->update();
    return smoke;
}

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::fprintf(stderr, "usage: make_film SCENE.3DS FILM.apng\n");
        return 2;
    }
    ParticleSource* smoke = nullptr;
    RenderOptions options;
    options.scene = argv[1];
    options.output = argv[2];
    options.camera = 3;
    options.light.shadows = true;
    options.picture.width = 480;
    options.picture.height = 270;
    options.picture.samples = 2;
    options.frames = {0, 356, 4, true, true, 15};
    options.loaded = [&](OGroup* group)
    {
        smoke = makeSmoke(group);
        if (smoke)
            group->addParticleSource(smoke); // the group destroys it
    };
    options.moved = [&](OGroup*, int)
    {
        for (int i = 0; smoke && i < options.frames.step; ++i)
            smoke->update();
    };
    options.picture.drawMore = [&](Camera* camera)
    {
        if (!smoke)
            return;
        camera->rotationFromTarget();
        smoke->draw(camera);
    };
    return render(options);
}

// Houses from a handful of numbers each: walls cut into cells for the light, a gabled roof with overhang,
// windows, doors and chimneys set into them.
//
// A house stands in a frame of its own: the front along x from 0 to its width, looking to -y; the depth along
// y.

#include "samples/houses.h"

#include <algorithm>

#include "samples/landscape.h"

namespace sample
{

struct House
{
    float along;                      ///< where the front begins on its quay
    float width, depth, eaves, pitch; ///< pitch: height of the roof over half its span
    bool gableFront;
    int wall, roof;
    int storeys, columns;
    int door;       ///< column of the doors' image: 2 a warehouse gate, 3 a shop
    int litWindows; ///< of eight, about so many
    float setBack = 0;
};

constexpr float wallTile = 10; ///< metres of wall in one image
constexpr float windowWidth = 0.95f, windowHeight = 1.55f;

// Distance of things hung on a wall from it: enough for the depth buffer at the far end of the harbour.
constexpr float proud = 0.035f;

static float tileOf(int wall)
{
    return wall == bricks ? 3.2f : wall == planksGrey || wall == planksWarm ? 2.6f : wallTile;
}

class HouseBuilder
{
public:
    HouseBuilder(Builder& builder, const House& plan, uint32_t seed, bool detailed)
        : b(builder), h(plan), id(seed), fine(detailed), tile(tileOf(plan.wall))
    {
        shift = {5 * randomValue(seed, 1), 0};
        ridge = (h.gableFront ? h.width : h.depth) * 0.5f * h.pitch;
    }

    /// Filled by build().
    std::vector<Frame> flowerBoxes;

    void build()
    {
        walls();
        roof();
        windowsOfFront();
        if (fine)
        {
            plinth();
            chimney();
            if (h.door == 2)
                hoist();
            if (h.door == 3)
                awningOfShop();
        }
    }

private:
    Builder& b;
    const House& h;
    uint32_t id;
    bool fine;
    float tile, ridge;
    Vec2 shift;

    Vec3 up() const { return {0, 0, h.eaves}; }

    void walls()
    {
        b.material = h.wall;
        const Vec3 w = {h.width, 0, 0}, d = {0, h.depth, 0};
        const Vec2 over = shift + Vec2{0, h.eaves / tile};
        const float frontCell = b.cell;
        b.tiledPanel({}, w, up(), tile, shift);
        if (h.gableFront)
            b.gable(up(), w, {0, 0, ridge}, tile, over);
        if (!fine)
            return;
        b.cell = frontCell * 2.5f;
        b.tiledPanel(d, d * -1, up(), tile, shift);
        b.tiledPanel(w, d, up(), tile, shift);
        if (!h.gableFront)
        {
            b.gable(d + up(), d * -1, {0, 0, ridge}, tile, over);
            b.gable(w + up(), d, {0, 0, ridge}, tile, over);
        }
        b.cell = 100;
        b.tiledPanel(w + d, w * -1, up(), tile, shift);
        if (h.gableFront)
            b.gable(w + d + up(), w * -1, {0, 0, ridge}, tile, over);
        b.cell = frontCell;
    }

    // One side of the roof from its eaves edge: right along the eaves, rise from the eaves to the ridge.
    void slope(Vec3 corner, Vec3 right, Vec3 rise)
    {
        b.material = h.roof;
        const float cell = b.cell;
        b.cell = cell * 2;
        b.tiledPanel(corner, right, rise, h.roof == roofTiles ? 3.4f : 3.8f, {randomValue(id, 9), 0});
        b.cell = cell;
        if (!fine)
            return;
        // The lower edge and the verges have some thickness.
        const Vec3 thick = {0, 0, -0.16f};
        b.cell = 100;
        b.material = planksGrey;
        b.tiledPanel(corner + thick, right, thick * -1, 2);
        b.tiledPanel(corner + right + thick, rise, thick * -1, 2);
        b.tiledPanel(corner + thick + rise, rise * -1, thick * -1, 2);
        b.tiledPanel(corner + thick + rise, right, rise * -1, 2);
        b.cell = cell;
    }

    void roof()
    {
        const float overEaves = 0.35f, overVerge = 0.3f, lift = 0.1f;
        const float half = (h.gableFront ? h.width : h.depth) * 0.5f;
        const float reach = half + overEaves, drop = overEaves * h.pitch;
        if (h.gableFront)
        {
            const Vec3 along = {0, h.depth + 2 * overVerge, 0};
            const float low = h.eaves - drop + lift, front = -overVerge;
            slope({-overEaves, front + along.y, low}, along * -1, {reach, 0, ridge + drop});
            slope({h.width + overEaves, front, low}, along, {-reach, 0, ridge + drop});
        }
        else
        {
            const Vec3 along = {h.width + 2 * overVerge, 0, 0};
            const float low = h.eaves - drop + lift;
            slope({-overVerge, -overEaves, low}, along, {0, reach, ridge + drop});
            if (fine)
                slope({h.width + overVerge, h.depth + overEaves, low}, along * -1, {0, -reach, ridge + drop});
        }
        if (!fine)
            return;
        b.material = h.roof;
        const float top = h.eaves + ridge + lift + 0.06f;
        const Vec3 from = h.gableFront ? Vec3{half, -overVerge, top} : Vec3{-overVerge, half, top};
        const Vec3 to =
            h.gableFront ? Vec3{half, h.depth + overVerge, top} : Vec3{h.width + overVerge, half, top};
        b.rod(from, to, 0.17f, 0.17f, 6, 3);
    }

    bool hasFlowers(uint32_t number) const
    {
        return randomValue(id, number, 5) < 0.45f && h.wall != bricks && h.wall != planksWarm &&
               h.wall != planksGrey;
    }

    void flat(Vec3 corner, float width, float height, Patch patch, int material)
    {
        const float cell = b.cell;
        b.cell = 100;
        b.material = material;
        b.panel(corner + Vec3{0, -proud, 0}, {width, 0, 0}, {0, 0, height}, patch);
        b.cell = cell;
    }

    void window(float middle, float sill, uint32_t number, bool shutters)
    {
        const bool lit = randomValue(id, number, 3) * 8 < static_cast<float>(h.litWindows);
        const int kind = h.wall == bricks ? 2 : randomValue(id, number, 4) < 0.5f ? 0 : 1;
        const float left = middle - windowWidth / 2;
        flat({left, 0, sill}, windowWidth, windowHeight, cellOf(kind, lit ? 0 : 1, 4, 2),
             lit ? windowsLit : windows);
        if (!fine)
            return;
        if (shutters)
        {
            const Patch leaf = cellOf(3, static_cast<int>(id % 2), 4, 2);
            flat({left - 0.52f, -0.02f, sill}, 0.5f, windowHeight, leaf, windows);
            flat({left + windowWidth + 0.02f, -0.02f, sill}, 0.5f, windowHeight, leaf, windows);
        }
        const float cell = b.cell;
        if (cell > 2)
            return;
        b.cell = 100;
        b.material = rock;
        b.box({left - 0.08f, -0.16f, sill - 0.12f}, {left + windowWidth + 0.08f, 0, sill}, 1.5f, "yXZ");
        if (hasFlowers(number))
        {
            b.material = planksWarm;
            b.box({left, -0.3f, sill}, {left + windowWidth, -0.1f, sill + 0.16f}, 1.2f, "yX");
            flowerBoxes.push_back(Frame::at({middle, -0.22f, sill + 0.2f}).within(b.frame));
        }
        b.cell = cell;
    }

    void windowsOfFront()
    {
        const float storey = h.eaves / static_cast<float>(h.storeys);
        const float pitchX = h.width / static_cast<float>(h.columns);
        const bool shutters = h.wall >= plasterOchre && h.wall <= plasterBlue && pitchX > 2.0f;
        const int doorColumn = static_cast<int>(randomValue(id, 6) * static_cast<float>(h.columns));
        uint32_t number = 0;
        for (int s = 0; s < h.storeys; ++s)
        {
            for (int c = 0; c < h.columns; ++c)
            {
                const float middle = (static_cast<float>(c) + 0.5f) * pitchX;
                const float floor = static_cast<float>(s) * storey;
                ++number;
                if (c == doorColumn && (s == 0 || h.door == 2))
                    doorAt(middle, floor);
                else if (s > 0 || h.door != 3)
                    window(middle, floor + storey * 0.36f, number, shutters);
                else
                    flat({middle - 0.95f, 0, 0.1f}, 1.9f, 2.3f, cellOf(3, 0, 4, 1), shopWindow);
            }
        }
        if (h.gableFront && ridge > 2.6f)
        {
            const float middle = h.width / 2, sill = h.eaves + ridge * 0.16f;
            if (h.door == 2)
                flat({middle - 0.7f, 0, sill}, 1.4f, 1.9f, cellOf(2, 0, 4, 1), doors);
            else
                window(middle, sill, 90, false);
        }
    }

    void doorAt(float middle, float floor)
    {
        const bool gate = h.door == 2;
        const float width = gate ? 1.9f : 1.15f, height = gate ? (floor > 0 ? 2.0f : 2.5f) : 2.3f;
        flat({middle - width / 2, 0, floor + (floor > 0 ? 0.25f : 0.02f)}, width, height,
             cellOf(h.door == 3 ? 0 : h.door, 0, 4, 1), doors);
        if (!fine || floor > 0)
            return;
        const float cell = b.cell;
        b.cell = 100;
        b.material = rock;
        b.box({middle - width / 2 - 0.2f, -0.55f, -0.02f}, {middle + width / 2 + 0.2f, 0, 0.14f}, 1.5f,
              "yxXZ");
        b.cell = cell;
    }

    void plinth()
    {
        b.material = quayWall;
        const float cell = b.cell;
        b.cell = 3;
        b.panel({-0.06f, -0.07f, -0.03f}, {h.width + 0.12f, 0, 0}, {0, 0, 0.5f},
                {{0, 0.5f}, {h.width / 5, 0.72f}});
        b.cell = cell;
    }

    void chimney()
    {
        const float cell = b.cell;
        // Cut across, since the ends lie in the roof and under the cap, where no light comes.
        b.cell = 0.85f;
        const float top = h.eaves + ridge + 0.95f;
        const float x = h.width * (h.gableFront ? 0.36f : 0.2f + 0.5f * randomValue(id, 7));
        const float y = h.depth * (h.gableFront ? 0.6f : 0.42f);
        b.material = bricks;
        b.box({x - 0.4f, y - 0.35f, top - 2.5f}, {x + 0.4f, y + 0.35f, top}, 2.2f, "xXyY");
        b.cell = 100;
        b.material = rock;
        b.box({x - 0.48f, y - 0.43f, top}, {x + 0.48f, y + 0.43f, top + 0.14f}, 1.5f);
        b.material = roofTiles;
        for (const float dx : {-0.2f, 0.2f})
            b.turned({x + dx, y, top + 0.14f}, {{0.13f, 0, 0}, {0.1f, 0.45f, 0.2f}}, 6, 1);
        b.cell = cell;
    }

    // The beam over the gates of a warehouse, with block and rope.
    void hoist()
    {
        if (!h.gableFront)
            return;
        const float cell = b.cell, top = h.eaves + ridge * 0.72f;
        b.cell = 100;
        b.material = planksGrey;
        b.box({h.width / 2 - 0.11f, -1.5f, top}, {h.width / 2 + 0.11f, 0.2f, top + 0.22f}, 1.5f);
        b.material = iron;
        b.rod({h.width / 2, -1.3f, top}, {h.width / 2, -1.3f, top - 1.9f}, 0.025f, 0.025f, 3, 1);
        b.turned({h.width / 2, -1.3f, top - 2.2f}, {{0, 0, 0}, {0.13f, 0.15f, 0.5f}, {0, 0.34f, 1}}, 6, 1);
        b.cell = cell;
    }

    void awningOfShop()
    {
        const float cell = b.cell;
        b.cell = 1.2f;
        b.material = awning;
        const Vec3 corner = {0.25f, -1.5f, 2.35f};
        const Vec3 right = {h.width - 0.5f, 0, 0};
        b.panel(corner, right, {0, 1.45f, 0.62f}, {{0, 0.15f}, {h.width / 2.6f, 1}});
        b.panel(corner - Vec3{0, 0, 0.22f}, right, {0, 0, 0.22f}, {{0, 0}, {h.width / 2.6f, 0.15f}});
        b.cell = cell;
    }
};

// The east quay from south to north: along runs from the south end.
static const House eastRow[] = {
    {-33, 8.5f, 9, 6.2f, 1.0f, false, plasterCream, slates, 2, 3, 1, 2},
    {-24, 7.4f, 9, 6.6f, 1.15f, true, timberFrame, roofTiles, 2, 3, 0, 3},
    {-16.4f, 8.2f, 10, 6.0f, 0.95f, false, plasterOchre, roofTiles, 2, 3, 3, 4},
    {-8, 6.6f, 9, 7.0f, 1.25f, true, plasterRose, slates, 2, 3, 0, 2},
    {-1.2f, 8.8f, 10, 8.0f, 1.05f, true, bricks, slates, 3, 4, 2, 2},
    {7.8f, 6.4f, 9, 5.6f, 1.1f, false, timberFrame, roofTiles, 2, 3, 1, 4},
    {16.4f, 7.0f, 9, 6.8f, 1.2f, true, plasterCream, roofTiles, 2, 3, 3, 3},
    {23.6f, 7.6f, 9, 6.2f, 1.0f, false, plasterBlue, slates, 2, 3, 0, 3},
    {31.4f, 8.0f, 10, 7.4f, 1.1f, true, planksWarm, roofTiles, 3, 3, 2, 2},
    {39.6f, 6.8f, 9, 6.4f, 1.15f, false, plasterOchre, roofTiles, 2, 3, 1, 3},
};

// The north quay from east to west.
static const House northRow[] = {
    {-7.4f, 8.4f, 9, 7.2f, 1.1f, true, plasterRose, roofTiles, 2, 3, 3, 4, 0.4f},
    {-14.6f, 7.0f, 9, 6.0f, 1.0f, false, timberFrame, slates, 2, 3, 0, 3},
    {-23.6f, 8.8f, 11, 9.0f, 1.15f, true, bricks, roofTiles, 3, 4, 2, 3, -0.5f},
    {-30.8f, 7.0f, 9, 6.2f, 1.1f, false, plasterCream, roofTiles, 2, 3, 1, 3},
    {-38.4f, 7.4f, 9, 5.4f, 0.95f, true, planksGrey, slates, 1, 2, 2, 2},
};

static std::vector<Frame> addHouse(Scene& scene, const House& house, const Frame& frame, float cell,
                                   uint32_t seed, const std::string& name)
{
    Mesh& mesh = scene.addMesh(name);
    Builder b(mesh);
    b.frame = frame;
    b.cell = cell;
    HouseBuilder builder(b, house, seed, true);
    builder.build();

    Mesh& below = scene.addMesh(name + "B");
    Builder m(below);
    m.frame = frame;
    m.mirrorShift = materialCount;
    HouseBuilder(m, house, seed, false).build();
    return builder.flowerBoxes;
}

// Finer where the first camera is near, coarse behind its back.
static float cellFor(const House& house)
{
    if (house.along < -30)
        return 4.5f;
    return house.along < -5 ? 1.2f : house.along < 5 ? 1.6f : 2.4f;
}

std::vector<Frame> addHouses(Scene& scene)
{
    std::vector<Frame> boxes;
    uint32_t seed = 1;
    for (const House& house : eastRow)
    {
        // The front looks west: x of the house runs south, so it begins at its north end.
        const Frame frame = Frame::turned({10 + house.setBack, house.along + house.width, quayHeight}, -90);
        const auto found =
            addHouse(scene, house, frame, cellFor(house), seed, "House E" + std::to_string(seed));
        boxes.insert(boxes.end(), found.begin(), found.end());
        ++seed;
    }
    for (const House& house : northRow)
    {
        const Frame frame = Frame::at({house.along, 55 + house.setBack, quayHeight});
        addHouse(scene, house, frame, 2.6f, seed, "House N" + std::to_string(seed));
        ++seed;
    }
    return boxes;
}

} // namespace sample

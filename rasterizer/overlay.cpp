// Drawing in window coordinates: the projection becomes one unit a pixel, something is drawn, and the
// perspective of vrkViewport returns.
//
// Lines and boxes talk to OpenGL throughout. Images and the grid exist on both rasterizers, so their switches
// go through the portable calls.

#include "vornik/rasterizer/overlay.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <initializer_list>

#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/packedcolor.h"
#include "rasterizer/texturename.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"

static void setSwitch(GLenum name, bool on)
{
    if (on)
        glEnable(name);
    else
        glDisable(name);
}

// Switches of OpenGL with what they were before.
class Switches
{
public:
    void turn(GLenum name, bool on)
    {
        const bool was = glIsEnabled(name) == GL_TRUE;
        if (was != on)
            setSwitch(name, on);
        taken[count++] = {name, was};
    }

    /// In the order in which they were turned.
    void restore()
    {
        for (int i = 0; i < count; ++i)
            setSwitch(taken[i].name, taken[i].was);
    }

private:
    struct Taken
    {
        GLenum name;
        bool was;
    };
    Taken taken[5] = {};
    int count = 0;
};

// The six switches of images and the grid, as those need them, until it goes.
class ImageSwitches
{
public:
    ImageSwitches()
        : alphaTest(turnOff(VRK_ALPHA_TEST)), depthTest(turnOff(VRK_DEPTH_TEST)), fog(turnOff(VRK_FOG)),
          culling(turnOff(VRK_CULL_FACE)), blending(turnOn(VRK_BLEND)), texturing(turnOn(VRK_TEXTURE))
    {
    }
    ImageSwitches(const ImageSwitches&) = delete;
    ImageSwitches& operator=(const ImageSwitches&) = delete;
    ~ImageSwitches()
    {
        set(VRK_DEPTH_TEST, depthTest);
        set(VRK_BLEND, blending);
        set(VRK_FOG, fog);
        set(VRK_TEXTURE, texturing);
        set(VRK_ALPHA_TEST, alphaTest);
        set(VRK_CULL_FACE, culling);
    }

private:
    static bool turnOff(int constant)
    {
        const bool was = vrkIsEnabled(constant);
        vrkDisable(constant);
        return was;
    }

    static bool turnOn(int constant)
    {
        const bool was = vrkIsEnabled(constant);
        vrkEnable(constant);
        return was;
    }

    static void set(int constant, bool on)
    {
        if (on)
            vrkEnable(constant);
        else
            vrkDisable(constant);
    }

    bool alphaTest, depthTest, fog, culling, blending, texturing;
};

static void loadWindowProjection()
{
    glLoadIdentity();
    glOrtho(0.0, vrkViewport.width, 0.0, vrkViewport.height, 1e-7, 1.0);
}

static void loadPerspective()
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(vrkViewport.fov, vrkViewport.aspect, vrkViewport.nearClip, vrkViewport.farClip);
}

static void loadIdentityModelView()
{
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

// Lines and boxes: on the far plane, untextured and blended.
template <class Draw>
static void drawOnFarPlane(Draw draw)
{
    glMatrixMode(GL_PROJECTION);
    loadWindowProjection();
    loadIdentityModelView();
    glTranslatef(0.0f, 0.0f, -1.0f);
    Switches switches;
    for (const GLenum name : {GL_CULL_FACE, GL_FOG, GL_DEPTH_TEST, GL_TEXTURE_2D})
        switches.turn(name, false);
    switches.turn(GL_BLEND, true);

    draw();

    loadPerspective();
    loadIdentityModelView();
    switches.restore();
}

static void setColor(const Color& c)
{
    glColor4f(c.r, c.g, c.b, c.a);
}

// Both ends are the first point: the lines of the overlay have no length.
static void sendLine(float x, float y, float z, const Color& c)
{
    glBegin(GL_LINES);
    setColor(c);
    glVertex3f(x, y, z);
    glVertex3f(x, y, z);
    glEnd();
}

// Turns window coordinates into OpenGL's, in the caller's records.
template <class Vertex>
static void mirror(Vertex* a, Vertex* b)
{
    a->y = vrkViewport.height - a->y;
    b->y = vrkViewport.height - b->y;
}

void vrkDrawLine(Vertex2D* a, Vertex2D* b, Color* c)
{
    if (!a || !b || !c)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        mirror(a, b);
        drawOnFarPlane([&] { sendLine(a->x, a->y, 0.0f, *c); });
    }
}

void vrkDrawLine(Vertex3D* a, Vertex3D* b, Color* c)
{
    if (!a || !b || !c)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        mirror(a, b);
        drawOnFarPlane([&] { sendLine(a->x, a->y, a->z, *c); });
    }
}

void vrkDraw3DLine(Vertex3D* a, Vertex3D* b, Color* c)
{
    if (!a || !b || !c)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        loadIdentityModelView();
        Switches switches;
        switches.turn(GL_CULL_FACE, false);
        switches.turn(GL_FOG, false);
        switches.turn(GL_BLEND, true);
        switches.turn(GL_TEXTURE_2D, false);
        sendLine(a->x, a->y, a->z, *c);
        switches.restore();
    }
}

void vrkDrawBox(Vertex2D* a, Vertex2D* b, Color* c)
{
    if (!a || !b || !c)
        return;
    const Vertex2D corners[] = {{a->x, a->y}, {b->x, a->y}, {b->x, b->y}, {a->x, b->y}};
    for (int i = 0; i < 4; ++i)
    {
        Vertex2D from = corners[i];
        Vertex2D to = corners[(i + 1) % 4];
        vrkDrawLine(&from, &to, c);
    }
}

static void sendBox(const Vertex2D& a, const Vertex2D& b, std::initializer_list<const Color*> colors)
{
    const Vertex2D corners[] = {{a.x, a.y}, {b.x, a.y}, {b.x, b.y}, {a.x, b.y}};
    const Color* const* color = colors.begin();
    glBegin(GL_QUADS);
    for (const Vertex2D& corner : corners)
    {
        if (color != colors.end())
            setColor(**color++);
        glVertex3f(corner.x, corner.y, 0.0f);
    }
    glEnd();
}

void vrkDrawFilledBox(Vertex2D* a, Vertex2D* b, Color* c)
{
    if (!a || !b || !c)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        mirror(a, b);
        drawOnFarPlane([&] { sendBox(*a, *b, {c}); });
    }
}

// On the far plane of Direct3D's depths, which is where the vertices of the overlay lie.
static D3DScreenVertex screenVertex(float x, float y, uint32_t color, float u = 0.0f, float v = 0.0f)
{
    return {x, y, 1.0f, 1.0f, color, 0, u, v};
}

static void drawBoxOnDirect3D(D3DRasterizer& d3d, const Vertex2D& a, const Vertex2D& b, Color* c1, Color* c2,
                              Color* c3, Color* c4)
{
    const uint32_t words[] = {packLimited(c1), packLimited(c2), packLimited(c3), packLimited(c4)};
    d3d.setTexture(nullptr);
    d3d.setStageState(d3d::alphaArg1, d3d::argDiffuse);
    d3d.setStageState(d3d::alphaOp, d3d::selectArg1);
    d3d.drawStrip({screenVertex(a.x, b.y, words[3]), screenVertex(a.x, a.y, words[0]),
                   screenVertex(b.x, b.y, words[2]), screenVertex(b.x, a.y, words[1])});
}

void vrkDrawFilledBox(Vertex2D* a, Vertex2D* b, Color* c1, Color* c2, Color* c3, Color* c4)
{
    if (!a || !b || !c1 || !c2 || !c3 || !c4)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        mirror(a, b);
        drawOnFarPlane([&] { sendBox(*a, *b, {c1, c2, c3, c4}); });
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        drawBoxOnDirect3D(*d3d, *a, *b, c1, c2, c3, c4);
}

// Textures lie untransformed on images; the projection waits on its stack.
static void beginImage()
{
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    loadWindowProjection();
    loadIdentityModelView();
}

static void endImage()
{
    loadPerspective();
    glPopMatrix();
    loadIdentityModelView();
}

static void bindFirstTexture(const Material& material)
{
    glBindTexture(GL_TEXTURE_2D, frameName(material.firstTexture, material.firstTexture->currentFrame));
}

static void sendImage(const Color& c, float h, float v)
{
    glBegin(GL_QUADS);
    setColor(c);
    glTexCoord2f(0.0f, 0.0f);
    glVertex3f(-h, -v, 0.0f);
    glTexCoord2f(1.0f, 0.0f);
    glVertex3f(h, -v, 0.0f);
    glTexCoord2f(1.0f, 1.0f);
    glVertex3f(h, v, 0.0f);
    glTexCoord2f(0.0f, 1.0f);
    glVertex3f(-h, v, 0.0f);
    glEnd();
}

// Draws an image about a middle in OpenGL's coordinates.
static void drawImage(float x, float y, const Material& material, const Color& c, float h, float v,
                      float rotation)
{
    beginImage();
    glTranslatef(x, y, -0.5f);
    if (rotation != 0.0f)
        glRotatef(rotation, 0.0f, 0.0f, 1.0f);
    bindFirstTexture(material);
    sendImage(c, h, v);
    endImage();
}

// Unturned. Between levels nothing is blended, and of them only the first is looked at.
static void drawImageOnDirect3D(D3DRasterizer& d3d, const Vertex3D& position, const Material& material,
                                Color* c, float width, float height)
{
    const uint32_t word = packLimited(c);
    const float right = position.x + width;
    const float bottom = position.y + height;
    vrkSetTexture(material.firstTexture);
    d3d.setColorStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    d3d.setAlphaStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    const uint32_t minFilter = d3d.stageState(d3d::minFilter);
    const uint32_t mipFilter = d3d.stageState(d3d::mipFilter);
    d3d.setStageState(d3d::minFilter, d3d::filterLinear);
    d3d.setStageState(d3d::mipFilter, d3d::mipNone);
    d3d.drawStrip({screenVertex(position.x, bottom, word, 0.0f, 0.0f),
                   screenVertex(position.x, position.y, word, 0.0f, 1.0f),
                   screenVertex(right, bottom, word, 1.0f, 0.0f),
                   screenVertex(right, position.y, word, 1.0f, 1.0f)});
    d3d.setStageState(d3d::minFilter, minFilter);
    d3d.setStageState(d3d::mipFilter, mipFilter);
}

void vrkDrawImage(Vertex3D* position, Material* material, Color* c, float width, float height,
                  bool /*unused*/, float rotation)
{
    if (!position || !material || !material->firstTexture || !c)
        return;
    const float h = width * 0.5f;
    const float v = height * 0.5f;
    const ImageSwitches switches;
    if (vrkSelectedRasterizer == 0)
        drawImage(h + position->x, (vrkViewport.height - v) - position->y, *material, *c, h, v, rotation);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        drawImageOnDirect3D(*d3d, *position, *material, c, 2.0f * h, 2.0f * v);
}

void vrkDrawImageWithoutYConversion(Vertex3D* position, Material* material, Color* c, float width,
                                    float height, bool /*unused*/)
{
    if (!position || !material || !material->firstTexture || !c)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        Switches switches;
        switches.turn(GL_DEPTH_TEST, false);
        switches.turn(GL_FOG, false);
        switches.turn(GL_BLEND, true);
        switches.turn(GL_TEXTURE_2D, true);
        switches.turn(GL_CULL_FACE, false);
        drawImage(position->x, position->y, *material, *c, width * 0.5f, height * 0.5f, 0.0f);
        switches.restore();
    }
}

static const int gridColumns = 80; // nodes
static const int gridRows = 60;

static void sendGrid(const Color* colors, const Vertex2D* coords, float cellWidth, float cellHeight)
{
    const auto sendNode = [=](int row, int column)
    {
        const int node = row * gridColumns + column;
        setColor(colors[node]);
        glTexCoord2f(coords[node].x, coords[node].y);
        glVertex3f(static_cast<float>(column) * cellWidth, -(static_cast<float>(row) * cellHeight), 0.0f);
    };
    glBegin(GL_QUADS);
    for (int row = 0; row + 1 < gridRows; ++row)
        for (int column = 0; column + 1 < gridColumns; ++column)
        {
            sendNode(row, column);
            sendNode(row, column + 1);
            sendNode(row + 1, column + 1);
            sendNode(row + 1, column);
        }
    glEnd();
}

void vrkDrawGrid(Color* colors, Vertex2D* coords, float width, float height, Material* material)
{
    if (!colors || !coords || !material || !material->firstTexture)
        return;
    const ImageSwitches switches;
    if (vrkSelectedRasterizer == 0)
    {
        beginImage();
        glPushMatrix();
        glTranslatef(0.0f, height, -0.1f);
        bindFirstTexture(*material);
        sendGrid(colors, coords, width * 0.012658228166401386f, height * 0.016949152573943138f);
        glPopMatrix();
        // On in any case; the switches then return to what they were.
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_FOG);
        glEnable(GL_CULL_FACE);
        endImage();
    }
}

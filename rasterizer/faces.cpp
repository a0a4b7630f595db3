// Ranges of faces to OpenGL, display lists and immediate mode.
//
// Only OpenGL draws faces from a mesh's arrays. Nothing here allocates.

#include "vornik/rasterizer/faces.h"

#include <GL/gl.h>

#include <climits>
#include <cstdint>
#include <initializer_list>

#include "rasterizer/constants.h"
#include "vornik/rasterizer/startup.h"

// An empty range reads no array, so any may be missing then.
static bool canRead(int first, int last, bool arraysThere)
{
    return first > last || (first >= 0 && arraysThere);
}

static void sendVertex(const Color& color, float alpha, const Vertex3D& normal, const Vertex2D& coords,
                       const Vertex3D& vertex)
{
    glColor4f(color.r, color.g, color.b, alpha);
    glNormal3f(normal.x, normal.y, normal.z);
    glTexCoord2f(coords.x, coords.y);
    glVertex3f(vertex.x, vertex.y, vertex.z);
}

void vrkRenderList(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals, Facelist* faces,
                   int first, int last)
{
    if (vrkSelectedRasterizer == 0)
    {
        const int64_t indices = (static_cast<int64_t>(last) - first + 1) * 3;
        if (!canRead(first, last, colors && coords && vertices && normals && faces) || indices < 0 ||
            indices > INT_MAX)
            return;
        glColorPointer(4, GL_FLOAT, 0, colors);
        glTexCoordPointer(2, GL_FLOAT, 0, coords);
        glVertexPointer(3, GL_FLOAT, 0, vertices);
        glNormalPointer(GL_FLOAT, 0, normals);
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(indices), GL_UNSIGNED_SHORT,
                       faces ? faces + first : nullptr);
    }
}

void vrkRenderBasic(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals, Facelist* faces,
                    int first, int last)
{
    if (vrkSelectedRasterizer == 0)
    {
        if (!canRead(first, last, colors && coords && vertices && normals && faces))
            return;
        glBegin(GL_TRIANGLES);
        for (int64_t i = first; i <= last; ++i)
            for (const int v : {faces[i].a, faces[i].b, faces[i].c})
                sendVertex(colors[v], 1.0f, normals[v], coords[v], vertices[v]);
        glEnd();
    }
}

void vrkRenderWire(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals, Facelist* faces,
                   const char* flags, int first, int last)
{
    if (vrkSelectedRasterizer == 0)
    {
        if (!canRead(first, last, colors && coords && vertices && normals && faces && flags))
            return;
        glBegin(GL_LINES);
        const float alpha = colors ? colors[0].a : 1.0f;
        const auto sendLine = [=](int from, int to)
        {
            for (const int v : {from, to})
                sendVertex(colors[v], alpha, normals[v], coords[v], vertices[v]);
        };
        // The last face of the range stays out.
        for (int i = first; i < last; ++i)
        {
            if (flags[i] & 1)
                sendLine(faces[i].c, faces[i].a);
            if (flags[i] & 2)
                sendLine(faces[i].a, faces[i].b);
            if (flags[i] & 4)
                sendLine(faces[i].b, faces[i].c);
        }
        glEnd();
    }
}

void vrkRenderReflection(Color* colors, Vertex3D* vertices, Vertex3D* normals, Facelist* faces, int first,
                         int last, float alpha)
{
    if (vrkSelectedRasterizer == 0)
    {
        if (!canRead(first, last, colors && vertices && normals && faces))
            return;
        glBegin(GL_TRIANGLES);
        for (int64_t i = first; i <= last; ++i)
            for (const int v : {faces[i].a, faces[i].b, faces[i].c})
            {
                // The normal as it stands, not turned to the eye: the reflection sticks to the object.
                const Vertex2D coords = {normals[v].x + 0.5f, normals[v].y + 0.5f};
                sendVertex(colors[v], alpha, normals[v], coords, vertices[v]);
            }
        glEnd();
    }
}

int vrkGenLists(int count)
{
    return vrkSelectedRasterizer == 0 ? static_cast<int>(glGenLists(count)) : 0;
}

void vrkDeleteLists(int list, int count)
{
    if (vrkSelectedRasterizer == 0)
        glDeleteLists(static_cast<GLuint>(list), count);
}

int vrkIsList(int list)
{
    return vrkSelectedRasterizer == 0 ? glIsList(static_cast<GLuint>(list)) : 0;
}

void vrkNewList(int list, int constant)
{
    GLenum mode;
    if (vrkSelectedRasterizer == 0 && translate(constant, &mode))
        glNewList(static_cast<GLuint>(list), mode);
}

void vrkEndList()
{
    if (vrkSelectedRasterizer == 0)
        glEndList();
}

void vrkCallList(int list)
{
    if (vrkSelectedRasterizer == 0)
        glCallList(static_cast<GLuint>(list));
}

void vrkBegin(int constant)
{
    GLenum mode;
    if (vrkSelectedRasterizer == 0 && translate(constant, &mode))
        glBegin(mode);
}

void vrkEnd()
{
    if (vrkSelectedRasterizer == 0)
        glEnd();
}

void vrkColor4f(float r, float g, float b, float a)
{
    if (vrkSelectedRasterizer == 0)
        glColor4f(r, g, b, a);
}

void vrkNormal3f(float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glNormal3f(x, y, z);
}

void vrkVertex3f(float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glVertex3f(x, y, z);
}

void vrkTexCoord2f(float u, float v)
{
    if (vrkSelectedRasterizer == 0)
        glTexCoord2f(u, v);
}

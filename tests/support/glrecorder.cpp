// The stand-ins for OpenGL and GLU, and the recorders that hear them.

#include "tests/support/glrecorder.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>

#include "tests/support/openglfunction.h"

static std::vector<GLRecorder*> recorders;
static int quiet = 0; // above 0 inside a GLU function or a Pause

GLRecorder::GLRecorder(Mode m) : mode(m)
{
    recorders.push_back(this);
}

GLRecorder::~GLRecorder()
{
    recorders.erase(std::remove(recorders.begin(), recorders.end(), this), recorders.end());
}

static std::string functionOf(const std::string& call)
{
    return call.substr(0, call.find('('));
}

int GLRecorder::count(const std::string& function) const
{
    return static_cast<int>(std::count_if(
        list.begin(), list.end(), [&](const std::string& call) { return functionOf(call) == function; }));
}

int GLRecorder::countExact(const std::string& call) const
{
    return static_cast<int>(std::count(list.begin(), list.end(), call));
}

std::vector<std::string> GLRecorder::only(const std::vector<std::string>& functions) const
{
    std::vector<std::string> found;
    for (const std::string& call : list)
        if (std::find(functions.begin(), functions.end(), functionOf(call)) != functions.end())
            found.push_back(call);
    return found;
}

std::string GLRecorder::text() const
{
    std::string lines;
    for (const std::string& call : list)
        lines += call + "\n";
    return lines;
}

void GLRecorder::clear()
{
    list.clear();
    pointers.clear();
}

void GLRecorder::note(const std::string& call, const void* pointer)
{
    list.push_back(call);
    pointers.push_back(pointer);
}

GLRecorder::Pause::Pause()
{
    ++quiet;
}

GLRecorder::Pause::~Pause()
{
    --quiet;
}

// Arguments as text. Many constants share a number, so each stand-in says what its arguments are.

struct Argument
{
    std::string text;
    const void* pointer = nullptr;
};

using Names = std::vector<std::pair<GLenum, const char*>>;
#define NAMED(constant)                                                                                      \
    {                                                                                                        \
        constant, #constant                                                                                  \
    }

static Argument named(const Names& names, GLenum value)
{
    for (const auto& [number, name] : names)
        if (number == value)
            return {name};
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", value);
    return {text};
}

static Argument constant(GLenum value)
{
    static const Names names = {NAMED(GL_TEXTURE),
                                NAMED(GL_PROJECTION),
                                NAMED(GL_MODELVIEW),
                                NAMED(GL_TEXTURE_2D),
                                NAMED(GL_TEXTURE_1D),
                                NAMED(GL_FOG),
                                NAMED(GL_BLEND),
                                NAMED(GL_COLOR_MATERIAL),
                                NAMED(GL_CULL_FACE),
                                NAMED(GL_FLAT),
                                NAMED(GL_SMOOTH),
                                NAMED(GL_ALPHA_TEST),
                                NAMED(GL_DEPTH_TEST),
                                NAMED(GL_MODULATE),
                                NAMED(GL_DECAL),
                                NAMED(GL_REPLACE),
                                NAMED(GL_ADD),
                                NAMED(GL_NEVER),
                                NAMED(GL_LESS),
                                NAMED(GL_EQUAL),
                                NAMED(GL_LEQUAL),
                                NAMED(GL_GREATER),
                                NAMED(GL_NOTEQUAL),
                                NAMED(GL_GEQUAL),
                                NAMED(GL_ALWAYS),
                                NAMED(GL_COMPILE),
                                NAMED(GL_COMPILE_AND_EXECUTE),
                                NAMED(GL_LIGHTING),
                                NAMED(GL_LIGHT0),
                                NAMED(GL_POLYGON_SMOOTH),
                                NAMED(GL_LINE_SMOOTH),
                                NAMED(GL_POINT_SMOOTH),
                                NAMED(GL_STENCIL_TEST),
                                NAMED(GL_SCISSOR_TEST),
                                NAMED(GL_DITHER),
                                NAMED(GL_NORMALIZE),
                                NAMED(GL_POLYGON_STIPPLE),
                                NAMED(GL_LINE_STIPPLE),
                                NAMED(GL_POLYGON_OFFSET_FILL),
                                NAMED(GL_POLYGON_OFFSET_LINE),
                                NAMED(GL_COLOR_LOGIC_OP),
                                NAMED(GL_TEXTURE_GEN_S),
                                NAMED(GL_TEXTURE_GEN_T),
                                NAMED(GL_TEXTURE_GEN_R),
                                NAMED(GL_VERTEX_ARRAY),
                                NAMED(GL_TEXTURE_COORD_ARRAY),
                                NAMED(GL_NORMAL_ARRAY),
                                NAMED(GL_COLOR_ARRAY),
                                NAMED(GL_INDEX_ARRAY),
                                NAMED(GL_EDGE_FLAG_ARRAY),
                                NAMED(GL_PERSPECTIVE_CORRECTION_HINT),
                                NAMED(GL_POLYGON_SMOOTH_HINT),
                                NAMED(GL_LINE_SMOOTH_HINT),
                                NAMED(GL_POINT_SMOOTH_HINT),
                                NAMED(GL_FOG_HINT),
                                NAMED(GL_FASTEST),
                                NAMED(GL_NICEST),
                                NAMED(GL_DONT_CARE),
                                NAMED(GL_VENDOR),
                                NAMED(GL_RENDERER),
                                NAMED(GL_VERSION),
                                NAMED(GL_EXTENSIONS),
                                NAMED(GL_FOG_MODE),
                                NAMED(GL_FOG_START),
                                NAMED(GL_FOG_END),
                                NAMED(GL_FOG_DENSITY),
                                NAMED(GL_FOG_COLOR),
                                NAMED(GL_LINEAR),
                                NAMED(GL_EXP),
                                NAMED(GL_EXP2),
                                NAMED(GL_NEAREST),
                                NAMED(GL_LINEAR_MIPMAP_LINEAR),
                                NAMED(GL_LINEAR_MIPMAP_NEAREST),
                                NAMED(GL_NEAREST_MIPMAP_LINEAR),
                                NAMED(GL_NEAREST_MIPMAP_NEAREST),
                                NAMED(GL_TEXTURE_MIN_FILTER),
                                NAMED(GL_TEXTURE_MAG_FILTER),
                                NAMED(GL_TEXTURE_WRAP_S),
                                NAMED(GL_TEXTURE_WRAP_T),
                                NAMED(GL_REPEAT),
                                NAMED(GL_CLAMP),
                                NAMED(GL_TEXTURE_PRIORITY),
                                NAMED(GL_TEXTURE_BORDER_COLOR),
                                NAMED(GL_TEXTURE_ENV),
                                NAMED(GL_TEXTURE_ENV_MODE),
                                NAMED(GL_TEXTURE_ENV_COLOR),
                                NAMED(GL_RGBA8),
                                NAMED(GL_RGBA4),
                                NAMED(GL_RGBA),
                                NAMED(GL_RGB),
                                NAMED(GL_RGB8),
                                NAMED(GL_ALPHA),
                                NAMED(GL_LUMINANCE),
                                NAMED(GL_LUMINANCE_ALPHA),
                                NAMED(GL_DEPTH_COMPONENT),
                                NAMED(GL_UNSIGNED_BYTE),
                                NAMED(GL_BYTE),
                                NAMED(GL_UNSIGNED_SHORT),
                                NAMED(GL_SHORT),
                                NAMED(GL_UNSIGNED_INT),
                                NAMED(GL_INT),
                                NAMED(GL_FLOAT),
                                NAMED(GL_DOUBLE),
                                NAMED(GL_BITMAP),
                                NAMED(GL_MODELVIEW_MATRIX),
                                NAMED(GL_PROJECTION_MATRIX),
                                NAMED(GL_TEXTURE_MATRIX),
                                NAMED(GL_VIEWPORT),
                                NAMED(GL_MATRIX_MODE),
                                NAMED(GL_CURRENT_COLOR),
                                NAMED(GL_CURRENT_RASTER_POSITION),
                                NAMED(GL_CURRENT_RASTER_POSITION_VALID),
                                NAMED(GL_CURRENT_RASTER_COLOR),
                                NAMED(GL_COLOR_CLEAR_VALUE),
                                NAMED(GL_DEPTH_FUNC),
                                NAMED(GL_DEPTH_WRITEMASK),
                                NAMED(GL_BLEND_SRC),
                                NAMED(GL_BLEND_DST),
                                NAMED(GL_SHADE_MODEL),
                                NAMED(GL_TEXTURE_BINDING_2D),
                                NAMED(GL_MAX_TEXTURE_SIZE),
                                NAMED(GL_LINE_WIDTH),
                                NAMED(GL_POINT_SIZE),
                                NAMED(GL_FRONT),
                                NAMED(GL_BACK),
                                NAMED(GL_FRONT_AND_BACK),
                                NAMED(GL_FRONT_LEFT),
                                NAMED(GL_BACK_LEFT),
                                NAMED(GL_CW),
                                NAMED(GL_CCW),
                                NAMED(GL_POINT),
                                NAMED(GL_LINE),
                                NAMED(GL_FILL),
                                NAMED(GL_AMBIENT),
                                NAMED(GL_DIFFUSE),
                                NAMED(GL_SPECULAR),
                                NAMED(GL_EMISSION),
                                NAMED(GL_SHININESS),
                                NAMED(GL_AMBIENT_AND_DIFFUSE),
                                NAMED(GL_POSITION),
                                NAMED(GL_PACK_ALIGNMENT),
                                NAMED(GL_UNPACK_ALIGNMENT),
                                NAMED(GL_PACK_ROW_LENGTH),
                                NAMED(GL_UNPACK_ROW_LENGTH),
                                NAMED(GL_S),
                                NAMED(GL_T),
                                NAMED(GL_TEXTURE_GEN_MODE),
                                NAMED(GL_SPHERE_MAP),
                                NAMED(GL_EYE_LINEAR),
                                NAMED(GL_OBJECT_LINEAR),
                                NAMED(GL_COLOR)};
    return named(names, value);
}

static Argument primitive(GLenum value)
{
    static const Names names = {NAMED(GL_POINTS),       NAMED(GL_LINES),     NAMED(GL_LINE_LOOP),
                                NAMED(GL_LINE_STRIP),   NAMED(GL_TRIANGLES), NAMED(GL_TRIANGLE_STRIP),
                                NAMED(GL_TRIANGLE_FAN), NAMED(GL_QUADS),     NAMED(GL_QUAD_STRIP),
                                NAMED(GL_POLYGON)};
    return named(names, value);
}

static Argument factor(GLenum value)
{
    static const Names names = {NAMED(GL_ZERO),
                                NAMED(GL_ONE),
                                NAMED(GL_SRC_COLOR),
                                NAMED(GL_ONE_MINUS_SRC_COLOR),
                                NAMED(GL_SRC_ALPHA),
                                NAMED(GL_DST_ALPHA),
                                NAMED(GL_ONE_MINUS_SRC_ALPHA),
                                NAMED(GL_ONE_MINUS_DST_ALPHA),
                                NAMED(GL_DST_COLOR),
                                NAMED(GL_ONE_MINUS_DST_COLOR),
                                NAMED(GL_SRC_ALPHA_SATURATE)};
    return named(names, value);
}

static Argument bits(GLbitfield value, const Names& names)
{
    std::string text;
    for (const auto& [bit, name] : names)
        if (value & bit)
        {
            text += (text.empty() ? "" : "|") + std::string(name);
            value &= ~bit;
        }
    if (value || text.empty())
        text += (text.empty() ? "" : "|") + named({}, value).text;
    return {text};
}

static Argument buffers(GLbitfield value)
{
    return bits(value, {NAMED(GL_COLOR_BUFFER_BIT), NAMED(GL_DEPTH_BUFFER_BIT), NAMED(GL_STENCIL_BUFFER_BIT),
                        NAMED(GL_ACCUM_BUFFER_BIT)});
}

static Argument attributes(GLbitfield value)
{
    if (value == GL_ALL_ATTRIB_BITS)
        return {"GL_ALL_ATTRIB_BITS"};
    return bits(value, {NAMED(GL_CURRENT_BIT), NAMED(GL_POINT_BIT), NAMED(GL_LINE_BIT), NAMED(GL_POLYGON_BIT),
                        NAMED(GL_PIXEL_MODE_BIT), NAMED(GL_LIGHTING_BIT), NAMED(GL_FOG_BIT),
                        NAMED(GL_DEPTH_BUFFER_BIT), NAMED(GL_STENCIL_BUFFER_BIT), NAMED(GL_VIEWPORT_BIT),
                        NAMED(GL_TRANSFORM_BIT), NAMED(GL_ENABLE_BIT), NAMED(GL_COLOR_BUFFER_BIT),
                        NAMED(GL_HINT_BIT), NAMED(GL_EVAL_BIT), NAMED(GL_LIST_BIT), NAMED(GL_TEXTURE_BIT),
                        NAMED(GL_SCISSOR_BIT)});
}

static Argument clientAttributes(GLbitfield value)
{
    return bits(value, {NAMED(GL_CLIENT_PIXEL_STORE_BIT), NAMED(GL_CLIENT_VERTEX_ARRAY_BIT)});
}

static Argument truth(GLboolean value)
{
    return {value == GL_TRUE ? "GL_TRUE" : value == GL_FALSE ? "GL_FALSE" : std::to_string(value)};
}

template <class T>
static Argument number(T value)
{
    if constexpr (std::is_floating_point_v<T>)
    {
        char text[40];
        std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
        return {text};
    }
    else
        return {std::to_string(value)};
}

static Argument pointer(const void* value)
{
    return {value ? "ptr" : "null", value};
}

template <class T>
static Argument array(const T* values, int count)
{
    if (!values)
        return {"null"};
    std::string text = "{";
    for (int i = 0; i < count; ++i)
        text += (i ? ", " : "") + number(values[i]).text;
    return {text + "}", values};
}

// A fog, texture or light parameter: how many numbers there are depends on its name, and some are constants.
static Argument parameters(GLenum name, const GLfloat* values)
{
    const bool four = name == GL_FOG_COLOR || name == GL_TEXTURE_BORDER_COLOR ||
                      name == GL_TEXTURE_ENV_COLOR || name == GL_AMBIENT || name == GL_DIFFUSE ||
                      name == GL_SPECULAR || name == GL_EMISSION || name == GL_AMBIENT_AND_DIFFUSE ||
                      name == GL_POSITION;
    return array(values, four ? 4 : 1);
}

static Argument parameter(GLenum name, GLint value)
{
    if (name == GL_TEXTURE_PRIORITY || name == GL_FOG_START || name == GL_FOG_END || name == GL_FOG_DENSITY)
        return number(value);
    return constant(static_cast<GLenum>(value));
}

// Internal formats of one to four components are given as that number.
static Argument internalFormat(GLint value)
{
    return value >= 1 && value <= 4 ? number(value) : constant(static_cast<GLenum>(value));
}

static bool listening()
{
    return quiet == 0 && !recorders.empty();
}

// @return true if OpenGL is to get the call
static bool note(const char* function, const std::vector<Argument>& arguments)
{
    std::string call = function;
    const void* last = nullptr;
    const char* separator = "(";
    for (const Argument& argument : arguments)
    {
        call += separator + argument.text;
        separator = ", ";
        if (argument.pointer)
            last = argument.pointer;
    }
    call += arguments.empty() ? "()" : ")";

    bool pass = true;
    for (GLRecorder* recorder : recorders)
    {
        recorder->note(call, last);
        pass = pass && recorder->recordingMode() == GLRecorder::forward;
    }
    return pass;
}

static void* library(const char* function)
{
    void* found = openGLFunction(function);
    if (!found)
    {
        std::fprintf(stderr, "%s: no such function in the OpenGL libraries\n", function);
        std::abort();
    }
    return found;
}

// One stand-in: its type, name, parameters, the names to pass on, and how its arguments read.
#define STAND_IN(type, function, parameters, arguments, ...)                                                 \
    extern "C" type APIENTRY function parameters                                                             \
    {                                                                                                        \
        static const auto real = reinterpret_cast<decltype(&function)>(library(#function));                  \
        if (listening() && !note(#function, {__VA_ARGS__}))                                                  \
            return static_cast<type>(0);                                                                     \
        return real arguments;                                                                               \
    }

#define STAND_IN_GLU(type, function, parameters, arguments, ...)                                             \
    extern "C" type APIENTRY function parameters                                                             \
    {                                                                                                        \
        static const auto real = reinterpret_cast<decltype(&function)>(library(#function));                  \
        if (listening() && !note(#function, {__VA_ARGS__}))                                                  \
            return static_cast<type>(0);                                                                     \
        const GLRecorder::Pause unheard;                                                                     \
        return real arguments;                                                                               \
    }

extern "C" void APIENTRY glGenTextures(GLsizei n, GLuint* names)
{
    static const auto real = reinterpret_cast<decltype(&glGenTextures)>(library("glGenTextures"));
    if (!listening() || note("glGenTextures", {number(n), pointer(names)}))
        return real(n, names);
    for (const GLRecorder* recorder : recorders)
        if (recorder->textureName)
            std::fill_n(names, n, recorder->textureName);
}

extern "C" GLboolean glIsList(GLuint list)
{
    static const auto real = reinterpret_cast<decltype(&glIsList)>(library("glIsList"));
    if (!listening())
        return real(list);
    const bool pass = note("glIsList", {number(list)});
    for (const GLRecorder* recorder : recorders)
        if (list < recorder->takenLists)
            return GL_TRUE;
    return pass ? real(list) : static_cast<GLboolean>(GL_FALSE);
}

// clang-format off

// Frame, state, queries
STAND_IN(void, glViewport, (GLint x, GLint y, GLsizei w, GLsizei h), (x, y, w, h), number(x), number(y), number(w), number(h))
STAND_IN(void, glScissor, (GLint x, GLint y, GLsizei w, GLsizei h), (x, y, w, h), number(x), number(y), number(w), number(h))
STAND_IN(void, glDepthRange, (GLclampd n, GLclampd f), (n, f), number(n), number(f))
STAND_IN(void, glClear, (GLbitfield mask), (mask), buffers(mask))
STAND_IN(void, glClearColor, (GLclampf r, GLclampf g, GLclampf b, GLclampf a), (r, g, b, a), number(r), number(g), number(b), number(a))
STAND_IN(void, glClearDepth, (GLclampd depth), (depth), number(depth))
STAND_IN(void, glEnable, (GLenum cap), (cap), constant(cap))
STAND_IN(void, glDisable, (GLenum cap), (cap), constant(cap))
STAND_IN(GLboolean, glIsEnabled, (GLenum cap), (cap), constant(cap))
STAND_IN(void, glEnableClientState, (GLenum cap), (cap), constant(cap))
STAND_IN(void, glDisableClientState, (GLenum cap), (cap), constant(cap))
STAND_IN(void, glHint, (GLenum target, GLenum mode), (target, mode), constant(target), constant(mode))
STAND_IN(void, glShadeModel, (GLenum mode), (mode), constant(mode))
STAND_IN(void, glCullFace, (GLenum mode), (mode), constant(mode))
STAND_IN(void, glFrontFace, (GLenum mode), (mode), constant(mode))
STAND_IN(void, glPolygonMode, (GLenum face, GLenum mode), (face, mode), constant(face), constant(mode))
STAND_IN(void, glPolygonOffset, (GLfloat f, GLfloat u), (f, u), number(f), number(u))
STAND_IN(void, glBlendFunc, (GLenum s, GLenum d), (s, d), factor(s), factor(d))
STAND_IN(void, glDepthFunc, (GLenum func), (func), constant(func))
STAND_IN(void, glDepthMask, (GLboolean flag), (flag), truth(flag))
STAND_IN(void, glColorMask, (GLboolean r, GLboolean g, GLboolean b, GLboolean a), (r, g, b, a), truth(r), truth(g), truth(b), truth(a))
STAND_IN(void, glAlphaFunc, (GLenum func, GLclampf ref), (func, ref), constant(func), number(ref))
STAND_IN(void, glLineWidth, (GLfloat w), (w), number(w))
STAND_IN(void, glLineStipple, (GLint f, GLushort p), (f, p), number(f), number(p))
STAND_IN(void, glPointSize, (GLfloat s), (s), number(s))
STAND_IN(void, glDrawBuffer, (GLenum mode), (mode), constant(mode))
STAND_IN(void, glReadBuffer, (GLenum mode), (mode), constant(mode))
STAND_IN(void, glPushAttrib, (GLbitfield mask), (mask), attributes(mask))
STAND_IN(void, glPopAttrib, (), ())
STAND_IN(void, glPushClientAttrib, (GLbitfield mask), (mask), clientAttributes(mask))
STAND_IN(void, glPopClientAttrib, (), ())
STAND_IN(void, glFinish, (), ())
STAND_IN(void, glFlush, (), ())
STAND_IN(GLenum, glGetError, (), ())
STAND_IN(const GLubyte*, glGetString, (GLenum name), (name), constant(name))
STAND_IN(void, glGetBooleanv, (GLenum name, GLboolean* out), (name, out), constant(name), pointer(out))
STAND_IN(void, glGetIntegerv, (GLenum name, GLint* out), (name, out), constant(name), pointer(out))
STAND_IN(void, glGetFloatv, (GLenum name, GLfloat* out), (name, out), constant(name), pointer(out))
STAND_IN(void, glGetDoublev, (GLenum name, GLdouble* out), (name, out), constant(name), pointer(out))

// Matrices
STAND_IN(void, glMatrixMode, (GLenum mode), (mode), constant(mode))
STAND_IN(void, glLoadIdentity, (), ())
STAND_IN(void, glPushMatrix, (), ())
STAND_IN(void, glPopMatrix, (), ())
STAND_IN(void, glLoadMatrixf, (const GLfloat* m), (m), array(m, 16))
STAND_IN(void, glLoadMatrixd, (const GLdouble* m), (m), array(m, 16))
STAND_IN(void, glMultMatrixf, (const GLfloat* m), (m), array(m, 16))
STAND_IN(void, glMultMatrixd, (const GLdouble* m), (m), array(m, 16))
STAND_IN(void, glRotatef, (GLfloat a, GLfloat x, GLfloat y, GLfloat z), (a, x, y, z), number(a), number(x), number(y), number(z))
STAND_IN(void, glRotated, (GLdouble a, GLdouble x, GLdouble y, GLdouble z), (a, x, y, z), number(a), number(x), number(y), number(z))
STAND_IN(void, glTranslatef, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glTranslated, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glScalef, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glScaled, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glOrtho, (GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f), (l, r, b, t, n, f), number(l), number(r), number(b), number(t), number(n), number(f))
STAND_IN(void, glFrustum, (GLdouble l, GLdouble r, GLdouble b, GLdouble t, GLdouble n, GLdouble f), (l, r, b, t, n, f), number(l), number(r), number(b), number(t), number(n), number(f))

// Fog
STAND_IN(void, glFogi, (GLenum name, GLint value), (name, value), constant(name), parameter(name, value))
STAND_IN(void, glFogf, (GLenum name, GLfloat value), (name, value), constant(name), number(value))
STAND_IN(void, glFogfv, (GLenum name, const GLfloat* values), (name, values), constant(name), parameters(name, values))
STAND_IN(void, glFogiv, (GLenum name, const GLint* values), (name, values), constant(name), pointer(values))

// Lights and materials
STAND_IN(void, glLightf, (GLenum light, GLenum name, GLfloat value), (light, name, value), constant(light), constant(name), number(value))
STAND_IN(void, glLightfv, (GLenum light, GLenum name, const GLfloat* values), (light, name, values), constant(light), constant(name), parameters(name, values))
STAND_IN(void, glMaterialf, (GLenum face, GLenum name, GLfloat value), (face, name, value), constant(face), constant(name), number(value))
STAND_IN(void, glMaterialfv, (GLenum face, GLenum name, const GLfloat* values), (face, name, values), constant(face), constant(name), parameters(name, values))
STAND_IN(void, glColorMaterial, (GLenum face, GLenum mode), (face, mode), constant(face), constant(mode))

// Textures
STAND_IN(void, glDeleteTextures, (GLsizei n, const GLuint* names), (n, names), number(n), array(names, n))
STAND_IN(GLboolean, glIsTexture, (GLuint name), (name), number(name))
STAND_IN(void, glBindTexture, (GLenum target, GLuint name), (target, name), constant(target), number(name))
STAND_IN(void, glTexParameteri, (GLenum target, GLenum name, GLint value), (target, name, value), constant(target), constant(name), parameter(name, value))
STAND_IN(void, glTexParameterf, (GLenum target, GLenum name, GLfloat value), (target, name, value), constant(target), constant(name), number(value))
STAND_IN(void, glTexParameterfv, (GLenum target, GLenum name, const GLfloat* values), (target, name, values), constant(target), constant(name), parameters(name, values))
STAND_IN(void, glTexEnvi, (GLenum target, GLenum name, GLint value), (target, name, value), constant(target), constant(name), parameter(name, value))
STAND_IN(void, glTexEnvf, (GLenum target, GLenum name, GLfloat value), (target, name, value), constant(target), constant(name), number(value))
STAND_IN(void, glTexEnvfv, (GLenum target, GLenum name, const GLfloat* values), (target, name, values), constant(target), constant(name), parameters(name, values))
STAND_IN(void, glTexGeni, (GLenum coord, GLenum name, GLint value), (coord, name, value), constant(coord), constant(name), constant(static_cast<GLenum>(value)))
STAND_IN(void, glTexImage2D, (GLenum target, GLint level, GLint format, GLsizei w, GLsizei h, GLint border, GLenum layout, GLenum type, const GLvoid* pixels), (target, level, format, w, h, border, layout, type, pixels), constant(target), number(level), internalFormat(format), number(w), number(h), number(border), constant(layout), constant(type), pointer(pixels))
STAND_IN(void, glTexSubImage2D, (GLenum target, GLint level, GLint x, GLint y, GLsizei w, GLsizei h, GLenum layout, GLenum type, const GLvoid* pixels), (target, level, x, y, w, h, layout, type, pixels), constant(target), number(level), number(x), number(y), number(w), number(h), constant(layout), constant(type), pointer(pixels))
STAND_IN(void, glCopyTexImage2D, (GLenum target, GLint level, GLenum format, GLint x, GLint y, GLsizei w, GLsizei h, GLint border), (target, level, format, x, y, w, h, border), constant(target), number(level), constant(format), number(x), number(y), number(w), number(h), number(border))
STAND_IN(void, glGetTexImage, (GLenum target, GLint level, GLenum layout, GLenum type, GLvoid* pixels), (target, level, layout, type, pixels), constant(target), number(level), constant(layout), constant(type), pointer(pixels))
STAND_IN(void, glGetTexParameteriv, (GLenum target, GLenum name, GLint* out), (target, name, out), constant(target), constant(name), pointer(out))
STAND_IN(void, glGetTexParameterfv, (GLenum target, GLenum name, GLfloat* out), (target, name, out), constant(target), constant(name), pointer(out))
STAND_IN(void, glGetTexLevelParameteriv, (GLenum target, GLint level, GLenum name, GLint* out), (target, level, name, out), constant(target), number(level), constant(name), pointer(out))
STAND_IN(void, glGetTexEnviv, (GLenum target, GLenum name, GLint* out), (target, name, out), constant(target), constant(name), pointer(out))

// Vertex arrays
STAND_IN(void, glColorPointer, (GLint n, GLenum type, GLsizei stride, const GLvoid* p), (n, type, stride, p), number(n), constant(type), number(stride), pointer(p))
STAND_IN(void, glTexCoordPointer, (GLint n, GLenum type, GLsizei stride, const GLvoid* p), (n, type, stride, p), number(n), constant(type), number(stride), pointer(p))
STAND_IN(void, glVertexPointer, (GLint n, GLenum type, GLsizei stride, const GLvoid* p), (n, type, stride, p), number(n), constant(type), number(stride), pointer(p))
STAND_IN(void, glNormalPointer, (GLenum type, GLsizei stride, const GLvoid* p), (type, stride, p), constant(type), number(stride), pointer(p))
STAND_IN(void, glDrawElements, (GLenum mode, GLsizei n, GLenum type, const GLvoid* p), (mode, n, type, p), primitive(mode), number(n), constant(type), pointer(p))
STAND_IN(void, glDrawArrays, (GLenum mode, GLint first, GLsizei n), (mode, first, n), primitive(mode), number(first), number(n))
STAND_IN(void, glArrayElement, (GLint i), (i), number(i))

// Immediate mode
STAND_IN(void, glBegin, (GLenum mode), (mode), primitive(mode))
STAND_IN(void, glEnd, (), ())
STAND_IN(void, glColor3f, (GLfloat r, GLfloat g, GLfloat b), (r, g, b), number(r), number(g), number(b))
STAND_IN(void, glColor4f, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), (r, g, b, a), number(r), number(g), number(b), number(a))
STAND_IN(void, glColor3fv, (const GLfloat* v), (v), array(v, 3))
STAND_IN(void, glColor4fv, (const GLfloat* v), (v), array(v, 4))
STAND_IN(void, glColor4ub, (GLubyte r, GLubyte g, GLubyte b, GLubyte a), (r, g, b, a), number(r), number(g), number(b), number(a))
STAND_IN(void, glNormal3f, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glNormal3fv, (const GLfloat* v), (v), array(v, 3))
STAND_IN(void, glTexCoord2f, (GLfloat u, GLfloat v), (u, v), number(u), number(v))
STAND_IN(void, glTexCoord2fv, (const GLfloat* v), (v), array(v, 2))
STAND_IN(void, glVertex2f, (GLfloat x, GLfloat y), (x, y), number(x), number(y))
STAND_IN(void, glVertex2i, (GLint x, GLint y), (x, y), number(x), number(y))
STAND_IN(void, glVertex2d, (GLdouble x, GLdouble y), (x, y), number(x), number(y))
STAND_IN(void, glVertex3f, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glVertex3d, (GLdouble x, GLdouble y, GLdouble z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glVertex3fv, (const GLfloat* v), (v), array(v, 3))
STAND_IN(void, glVertex4f, (GLfloat x, GLfloat y, GLfloat z, GLfloat w), (x, y, z, w), number(x), number(y), number(z), number(w))
STAND_IN(void, glRectf, (GLfloat x, GLfloat y, GLfloat z, GLfloat w), (x, y, z, w), number(x), number(y), number(z), number(w))

// Display lists
STAND_IN(GLuint, glGenLists, (GLsizei n), (n), number(n))
STAND_IN(void, glDeleteLists, (GLuint list, GLsizei n), (list, n), number(list), number(n))
STAND_IN(void, glNewList, (GLuint list, GLenum mode), (list, mode), number(list), constant(mode))
STAND_IN(void, glEndList, (), ())
STAND_IN(void, glCallList, (GLuint list), (list), number(list))
STAND_IN(void, glListBase, (GLuint base), (base), number(base))
STAND_IN(void, glCallLists, (GLsizei n, GLenum type, const GLvoid* lists), (n, type, lists), number(n), constant(type), type == GL_UNSIGNED_BYTE ? array(static_cast<const GLubyte*>(lists), n) : pointer(lists))

// Pixels
STAND_IN(void, glRasterPos2f, (GLfloat x, GLfloat y), (x, y), number(x), number(y))
STAND_IN(void, glRasterPos2i, (GLint x, GLint y), (x, y), number(x), number(y))
STAND_IN(void, glRasterPos2d, (GLdouble x, GLdouble y), (x, y), number(x), number(y))
STAND_IN(void, glRasterPos3f, (GLfloat x, GLfloat y, GLfloat z), (x, y, z), number(x), number(y), number(z))
STAND_IN(void, glRasterPos4f, (GLfloat x, GLfloat y, GLfloat z, GLfloat w), (x, y, z, w), number(x), number(y), number(z), number(w))
STAND_IN(void, glBitmap, (GLsizei w, GLsizei h, GLfloat x, GLfloat y, GLfloat dx, GLfloat dy, const GLubyte* image), (w, h, x, y, dx, dy, image), number(w), number(h), number(x), number(y), number(dx), number(dy), pointer(image))
STAND_IN(void, glReadPixels, (GLint x, GLint y, GLsizei w, GLsizei h, GLenum layout, GLenum type, GLvoid* pixels), (x, y, w, h, layout, type, pixels), number(x), number(y), number(w), number(h), constant(layout), constant(type), pointer(pixels))
STAND_IN(void, glDrawPixels, (GLsizei w, GLsizei h, GLenum layout, GLenum type, const GLvoid* pixels), (w, h, layout, type, pixels), number(w), number(h), constant(layout), constant(type), pointer(pixels))
STAND_IN(void, glCopyPixels, (GLint x, GLint y, GLsizei w, GLsizei h, GLenum type), (x, y, w, h, type), number(x), number(y), number(w), number(h), constant(type))
STAND_IN(void, glPixelZoom, (GLfloat x, GLfloat y), (x, y), number(x), number(y))
STAND_IN(void, glPixelStorei, (GLenum name, GLint value), (name, value), constant(name), number(value))
STAND_IN(void, glPixelTransferf, (GLenum name, GLfloat value), (name, value), constant(name), number(value))

// GLU
STAND_IN_GLU(void, gluPerspective, (GLdouble fov, GLdouble aspect, GLdouble n, GLdouble f), (fov, aspect, n, f), number(fov), number(aspect), number(n), number(f))
STAND_IN_GLU(void, gluOrtho2D, (GLdouble l, GLdouble r, GLdouble b, GLdouble t), (l, r, b, t), number(l), number(r), number(b), number(t))
STAND_IN_GLU(void, gluLookAt, (GLdouble ex, GLdouble ey, GLdouble ez, GLdouble cx, GLdouble cy, GLdouble cz, GLdouble ux, GLdouble uy, GLdouble uz), (ex, ey, ez, cx, cy, cz, ux, uy, uz), number(ex), number(ey), number(ez), number(cx), number(cy), number(cz), number(ux), number(uy), number(uz))
STAND_IN_GLU(GLint, gluBuild2DMipmaps, (GLenum target, GLint format, GLsizei w, GLsizei h, GLenum layout, GLenum type, const void* data), (target, format, w, h, layout, type, data), constant(target), internalFormat(format), number(w), number(h), constant(layout), constant(type), pointer(data))
STAND_IN_GLU(GLint, gluScaleImage, (GLenum layout, GLsizei w, GLsizei h, GLenum type, const void* in, GLsizei wOut, GLsizei hOut, GLenum typeOut, GLvoid* out), (layout, w, h, type, in, wOut, hOut, typeOut, out), constant(layout), number(w), number(h), constant(type), pointer(in), number(wOut), number(hOut), constant(typeOut), pointer(out))
STAND_IN_GLU(GLint, gluProject, (GLdouble x, GLdouble y, GLdouble z, const GLdouble* model, const GLdouble* proj, const GLint* view, GLdouble* wx, GLdouble* wy, GLdouble* wz), (x, y, z, model, proj, view, wx, wy, wz), number(x), number(y), number(z), array(model, 16), array(proj, 16), array(view, 4), pointer(wx), pointer(wy), pointer(wz))
STAND_IN_GLU(GLint, gluUnProject, (GLdouble x, GLdouble y, GLdouble z, const GLdouble* model, const GLdouble* proj, const GLint* view, GLdouble* ox, GLdouble* oy, GLdouble* oz), (x, y, z, model, proj, view, ox, oy, oz), number(x), number(y), number(z), array(model, 16), array(proj, 16), array(view, 4), pointer(ox), pointer(oy), pointer(oz))

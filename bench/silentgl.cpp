// OpenGL that does nothing, for programs that measure the engine alone. Defined in the program itself, these
// come before the library's.

#include <GL/gl.h>

#define SILENT(type, function, ...)                                                                          \
    extern "C" type function(__VA_ARGS__)                                                                    \
    {                                                                                                        \
        return static_cast<type>(0);                                                                         \
    }

// clang-format off

// Frame, state, queries
SILENT(void, glViewport, GLint, GLint, GLsizei, GLsizei)
SILENT(void, glClear, GLbitfield)
SILENT(void, glClearColor, GLclampf, GLclampf, GLclampf, GLclampf)
SILENT(void, glEnable, GLenum)
SILENT(void, glDisable, GLenum)
SILENT(GLboolean, glIsEnabled, GLenum)
SILENT(void, glEnableClientState, GLenum)
SILENT(void, glHint, GLenum, GLenum)
SILENT(void, glShadeModel, GLenum)
SILENT(void, glBlendFunc, GLenum, GLenum)
SILENT(void, glDepthFunc, GLenum)
SILENT(void, glDepthMask, GLboolean)
SILENT(void, glAlphaFunc, GLenum, GLclampf)
SILENT(void, glPushAttrib, GLbitfield)
SILENT(void, glPopAttrib)
SILENT(const GLubyte*, glGetString, GLenum)
SILENT(void, glGetIntegerv, GLenum, GLint*)
SILENT(void, glGetFloatv, GLenum, GLfloat*)
SILENT(void, glGetDoublev, GLenum, GLdouble*)
SILENT(void, glReadPixels, GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, GLvoid*)

// Matrices
SILENT(void, glMatrixMode, GLenum)
SILENT(void, glLoadIdentity)
SILENT(void, glPushMatrix)
SILENT(void, glPopMatrix)
SILENT(void, glLoadMatrixf, const GLfloat*)
SILENT(void, glMultMatrixf, const GLfloat*)
SILENT(void, glMultMatrixd, const GLdouble*)
SILENT(void, glRotatef, GLfloat, GLfloat, GLfloat, GLfloat)
SILENT(void, glTranslatef, GLfloat, GLfloat, GLfloat)
SILENT(void, glTranslated, GLdouble, GLdouble, GLdouble)
SILENT(void, glScalef, GLfloat, GLfloat, GLfloat)

// Fog
SILENT(void, glFogi, GLenum, GLint)
SILENT(void, glFogf, GLenum, GLfloat)
SILENT(void, glFogfv, GLenum, const GLfloat*)

// Textures
SILENT(void, glGenTextures, GLsizei, GLuint*)
SILENT(void, glDeleteTextures, GLsizei, const GLuint*)
SILENT(GLboolean, glIsTexture, GLuint)
SILENT(void, glBindTexture, GLenum, GLuint)
SILENT(void, glTexParameteri, GLenum, GLenum, GLint)
SILENT(void, glTexEnvi, GLenum, GLenum, GLint)
SILENT(void, glTexImage2D, GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const GLvoid*)

// Drawing
SILENT(void, glColorPointer, GLint, GLenum, GLsizei, const GLvoid*)
SILENT(void, glTexCoordPointer, GLint, GLenum, GLsizei, const GLvoid*)
SILENT(void, glVertexPointer, GLint, GLenum, GLsizei, const GLvoid*)
SILENT(void, glNormalPointer, GLenum, GLsizei, const GLvoid*)
SILENT(void, glDrawElements, GLenum, GLsizei, GLenum, const GLvoid*)
SILENT(void, glBegin, GLenum)
SILENT(void, glEnd)
SILENT(void, glColor4f, GLfloat, GLfloat, GLfloat, GLfloat)
SILENT(void, glNormal3f, GLfloat, GLfloat, GLfloat)
SILENT(void, glTexCoord2f, GLfloat, GLfloat)
SILENT(void, glVertex3f, GLfloat, GLfloat, GLfloat)

// Display lists
SILENT(GLuint, glGenLists, GLsizei)
SILENT(void, glDeleteLists, GLuint, GLsizei)
SILENT(GLboolean, glIsList, GLuint)
SILENT(void, glNewList, GLuint, GLenum)
SILENT(void, glEndList)
SILENT(void, glCallList, GLuint)

// Listens to what the engine says to OpenGL.
//
// The test program defines the gl... and glu... functions itself; they note the call and pass it on to the
// library. Constants appear by name, floats as "%g" prints them, arrays in braces, other pointers as "ptr" or
// "null". What GLU calls in its turn is not noted.
//
//     GLRecorder gl;
//     vrkEnable(VRK_FOG);
//     EXPECT_EQ(gl.calls(), (std::vector<std::string>{"glEnable(GL_FOG)"}));
#pragma once

#include <string>
#include <vector>

/// Records while it lives. A second one records alongside the first.
class GLRecorder
{
public:
    enum Mode
    {
        forward, ///< calls reach OpenGL
        swallow  ///< calls end here; results are 0 and nothing is written through pointers
    };

    explicit GLRecorder(Mode mode = forward);
    GLRecorder(const GLRecorder&) = delete;
    GLRecorder& operator=(const GLRecorder&) = delete;
    ~GLRecorder();

    /// What glGenTextures gives out while calls are swallowed. Nothing is written as long as it is 0.
    unsigned int textureName = 0;
    /// glIsList is true of all names below this, whatever OpenGL says.
    unsigned int takenLists = 0;

    const std::vector<std::string>& calls() const { return list; }
    /// How many calls of a function there were.
    int count(const std::string& function) const;
    /// How many calls read exactly so.
    int countExact(const std::string& call) const;
    /// The calls of these functions only, in their order.
    std::vector<std::string> only(const std::vector<std::string>& functions) const;
    /// Last pointer argument of call i; null if it has none.
    const void* pointer(size_t i) const { return pointers.at(i); }
    /// All calls, one a line, for messages.
    std::string text() const;
    void clear();

    /// No recorder hears what is called while a Pause lives. Calls go on to OpenGL.
    class Pause
    {
    public:
        Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
        ~Pause();
    };

    // For the stand-ins.
    Mode recordingMode() const { return mode; }
    void note(const std::string& call, const void* pointer);

private:
    Mode mode;
    std::vector<std::string> list;
    std::vector<const void*> pointers;
};

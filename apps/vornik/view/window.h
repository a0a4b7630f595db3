// The window: its events in the viewer's own words, and what the engine needs of it. The only place that
// knows SDL is behind it, so that the rest is tested without a display.
#pragma once

#include <memory>
#include <string>

#include "apps/vornik/view/bindings.h"
#include "apps/vornik/view/consoletext.h"
#include "vornik/platform.h"

enum class Happening
{
    quit,
    command, ///< a key of bindings()
    edit,    ///< a key for a line of text that is typed
    typed,   ///< text
    drag,    ///< the mouse moved with a button down
    wheel,   ///< up is positive
    dropped, ///< a file, in text
    resized, ///< ask for the size
    exposed  ///< what was drawn is gone
};

struct Event
{
    Happening kind = Happening::quit;
    Command command = Command::none;
    EditKey key = EditKey::none;
    bool secondButton = false; ///< of a drag: the right or the middle one
    float x = 0.0f, y = 0.0f;  ///< of a drag: pixels to the right and down; of the wheel: y in notches
    std::string text = {};
};

class Window
{
public:
    Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window();

    /// Of this size, or as much smaller in the same shape as the screen demands.
    /// @return what went wrong; empty if nothing did
    std::string open(const std::string& title, int width, int height);
    /// For initVornik, while the window lives.
    VRKWindow handle();
    /// In pixels.
    int width() const;
    int height() const;

    /// Takes the next event. @return false if there is none
    bool next(Event* event);
    /// Shows the system that the program lives, while it is busy for long. Events stay for next().
    void keepAlive();
    /// Waits until there is an event, or the time is over.
    void wait(int milliseconds);
    /// Keys held now. None while text is typed.
    Held held() const;
    bool isHidden() const;

    void setTitle(const std::string& title);
    void toggleFullScreen();
    /// Makes typed events instead of commands for keys that write.
    void setTyping(bool typing);

    /// Seconds since the start.
    static double seconds();
    static void sleep(double seconds);
    /// Pictures a second that the display shows, 60 if it doesn't say.
    int refreshRate() const;

private:
    struct State;
    std::unique_ptr<State> state;
};

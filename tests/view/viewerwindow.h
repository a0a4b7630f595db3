// A running "vornik view" on the X server of the tests: keys and mouse as a user's, pixels as a user sees
// them.
//
// Nothing here waits for a fixed time: what is to come is polled for, with a deadline far beyond what a busy
// machine needs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/apps/program.h"

struct _XDisplay;

class ViewerTest : public ProgramTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts the viewer and waits for its window. Fails the test if none comes.
    void open(const std::vector<std::string>& arguments);
    /// The same with any program whose window is called Vornik. @param command  for the shell, which is to
    /// stay in front
    void openCommand(const std::string& command);
    /// Waits for the end. @return the exit status, -1 if it doesn't end
    int waitForEnd();
    /// Presses Escape until the viewer ends, which must be with status 0.
    void quit();

    void press(const std::string& key); ///< by the X server's name, "F1" or "grave"
    void hold(const std::string& key, bool down);
    void type(const std::string& text); ///< letters, digits, blanks, dots, slashes and line feeds
    void drag(int x, int y, unsigned button = 1);
    void wheel(bool up);
    void resize(int width, int height);
    void askToClose();
    void terminate(); ///< as kill does
    void drop(const std::string& path);

    /// What the window shows.
    Bitmap grab();
    Rgb pixel(int x, int y);
    int screenWidth() const;
    int screenHeight() const;
    /// Is no part of the window off the screen?
    bool isOnScreen() const;
    /// Waits until it holds. @return does it?
    bool soon(const std::function<bool()>& condition);
    /// Lines of the viewer's standard output so far.
    std::vector<std::string> output() const;
    /// Where the eye stands, by the viewer's own word.
    std::vector<double> askForEye();

    TempFolder streams;

private:
    unsigned long findWindow();
    void answerDrop(const std::string& path);

    _XDisplay* display = nullptr;
    unsigned long window = 0;
    int process = -1;
};

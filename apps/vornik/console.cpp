#include "apps/vornik/console.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "apps/vornik/consolewords.h"
#include "apps/vornik/lineeditor.h"
#include "apps/vornik/progressbar.h"
#include "apps/vornik/surface.h"
#include "apps/vornik/text.h"
#include "vornik/vornik.h"

// What the console reaches by name. Its functions take no more than a number, so that they find the rest
// here.
static Scene* shownScene;
static float frame = 0.0f;

// EVAL SHOT: a picture of the scene at frame FRAME.
static void shot()
{
    // Frames wrap, so that any number that an int holds will do.
    const int shownFrame = std::fabs(frame) < 2e9f ? static_cast<int>(frame) : 0;
    for (int i = 0; i < shownScene->groupCount; ++i)
        shownScene->groups[i]->setCurrentFrame(shownFrame);
    vrkClear();
    shownScene->render(VRK_RENDER_SOLID | VRK_RENDER_ANIMATE_CAMERA);
    shownScene->render(VRK_RENDER_TRANSPARENT_NOW);
    vrkScreenShot();
}

// EVAL FRAMES: how many frames the first group has.
static int frames()
{
    return shownScene->groupCount > 0 ? shownScene->groups[0]->frameCount : 0;
}

// Names in the text come from files: nothing in them may command the terminal.
static std::string fitToPrint(const std::string& text)
{
    std::string shown;
    for (size_t start = 0; start < text.size();)
    {
        const size_t end = std::min(text.find_first_of("\n\t", start), text.size());
        shown += printable(text.substr(start, end - start));
        if (end < text.size())
            shown += text[end];
        start = end + 1;
    }
    return shown;
}

class Session
{
public:
    /// @return is there an engine to command?
    bool start(const ConsoleOptions& options);
    /// What the console has to say, ending in a line end if it is anything.
    std::string text();
    /// Keeps the number of the first line that failed.
    void note(int result) { firstFault = firstFault == 0 ? result : firstFault; }

    Scene scene;
    Console console;
    int firstFault = 0;

private:
    std::unique_ptr<Surface> surface;
    std::vector<char> buffer = std::vector<char>(VRK_CONSOLE_TEXT);
};

bool Session::start(const ConsoleOptions& options)
{
    shownScene = &scene;
    console.setScene(&scene);
    console.addProgressFunc(showProgress);
    console.addVar(&frame, "FRAME");
    console.addFunc(shot, "SHOT");
    console.addFunc(frames, "FRAMES");
    surface = std::make_unique<Surface>(options.width, options.height);
    return initVornik(0, surface->window(), &console, 32, 0, 24, 100, false, 0, true) == 0;
}

std::string Session::text()
{
    clearProgress();
    console.getText(buffer.data());
    std::string shown = fitToPrint(buffer.data());
    if (!shown.empty() && shown.back() != '\n')
        shown += '\n';
    return shown;
}

static void print(const std::string& text)
{
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

static int talk(Session* session)
{
    LineEditor editor("> ", consoleCommands());
    print(session->text());
    print("HELP lists the commands, EXIT ends.\n");
    std::string line;
    while (!session->console.exitRequest() && editor.read(&line))
    {
        if (line.empty())
            continue;
        session->console.command(line.c_str());
        // The line stands on the terminal already.
        const std::string echo = fitToPrint(">" + line + "\n");
        const std::string text = session->text();
        print(text.compare(0, echo.size(), echo) == 0 ? text.substr(echo.size()) : text);
        if (session->console.clearRequest())
            editor.clearScreen();
    }
    return 0;
}

// Cut where no console takes any more.
static bool readPlainLine(std::FILE* file, std::string* line)
{
    const size_t longest = 4096;
    line->clear();
    int c = std::fgetc(file);
    if (c == EOF)
        return false;
    for (; c != EOF && c != '\n'; c = std::fgetc(file))
        if (line->size() < longest)
            *line += static_cast<char>(c);
    if (!line->empty() && line->back() == '\r')
        line->pop_back();
    return true;
}

static void finishLine(Session* session, int result)
{
    session->note(result);
    print(session->text());
}

static int obeyLines(Session* session)
{
    session->text(); // banner and start-up are for people
    std::string line;
    while (!session->console.exitRequest() && readPlainLine(stdin, &line))
        finishLine(session, session->console.command(line.c_str()));
    return session->firstFault;
}

static int obeyScript(Session* session, std::FILE* script)
{
    session->text();
    while (!session->console.exitRequest() && !std::feof(script) && !std::ferror(script))
        finishLine(session, session->console.parseScriptLine(session->console.readln(script)));
    return session->firstFault;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

static File openScript(const std::string& name)
{
    if (name == "-")
        return {stdin, [](std::FILE*) { return 0; }};
    errno = EISDIR;
    if (std::filesystem::is_directory(name))
        return {nullptr, std::fclose};
    return {std::fopen(name.c_str(), "rb"), std::fclose};
}

int console(const ConsoleOptions& options)
{
    File script(nullptr, std::fclose);
    if (!options.script.empty())
    {
        script = openScript(options.script);
        if (!script)
            return fail(options.script + ": " + std::strerror(errno));
    }
    const auto session = std::make_unique<Session>(); // large for a stack
    if (!session->start(options))
        return fail("can't start OpenGL off-screen");
    if (script)
        return obeyScript(session.get(), script.get());
    return LineEditor::isPossible() ? talk(session.get()) : obeyLines(session.get());
}

#include "apps/vornik/view/window.h"

#include <algorithm>

#include <SDL.h>

#include "apps/vornik/view/nativewindow.h"

struct Window::State
{
    SDL_Window* window = nullptr;
    bool typing = false;
    bool fillsScreen = false;
    SDL_Rect before = {};                 // of the window, while it fills the screen
    std::vector<SDL_Keycode> commandKeys; // beside bindings()
    std::vector<SDL_Scancode> places;     // beside heldKeys()
};

Window::Window() : state(std::make_unique<State>())
{
    for (const Binding& binding : bindings())
        state->commandKeys.push_back(SDL_GetKeyFromName(binding.key));
    for (const HeldKey& key : heldKeys())
        state->places.push_back(SDL_GetScancodeFromName(key.key));
}

// A window that is larger than its screen has parts that nobody sees.
static void fitScreen(int* width, int* height)
{
    SDL_Rect room;
    if (SDL_GetDisplayUsableBounds(0, &room) != 0 || room.w < 1 || room.h < 1)
        return;
    const double part =
        std::min({1.0, static_cast<double>(room.w) / *width, static_cast<double>(room.h) / *height});
    *width = std::max(static_cast<int>(*width * part), 1);
    *height = std::max(static_cast<int>(*height * part), 1);
}

// SDL itself stays to the end of the process, and with it the connection that the engine's context lives on.
Window::~Window()
{
    if (state->window)
        SDL_DestroyWindow(state->window);
}

std::string Window::open(const std::string& title, int width, int height)
{
    prepareNativeWindows();
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "0"); // an interrupt is a wish to quit
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        return std::string("can't open a window: ") + SDL_GetError();
    fitScreen(&width, &height);
    const auto create = [&]
    {
        return SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height,
                                SDL_WINDOW_RESIZABLE);
    };
    state->window = create();
    if (state->window && !suitsOpenGL(state->window))
    {
        SDL_DestroyWindow(state->window);
        state->window = create();
    }
    if (!state->window)
        return std::string("can't open a window: ") + SDL_GetError();
    SDL_EnableScreenSaver(); // SDL takes every program for a game
    SDL_SetWindowMinimumSize(state->window, 160, 120);
    SDL_EventState(SDL_DROPFILE, SDL_ENABLE);
    setTyping(false);
    return "";
}

VRKWindow Window::handle()
{
    return nativeWindow(state->window);
}

int Window::width() const
{
    int width = 0;
    SDL_GetWindowSize(state->window, &width, nullptr);
    return width;
}

int Window::height() const
{
    int height = 0;
    SDL_GetWindowSize(state->window, nullptr, &height);
    return height;
}

static EditKey editKeyOf(SDL_Keycode key)
{
    static const struct
    {
        SDL_Keycode key;
        EditKey edit;
    } table[] = {{SDLK_LEFT, EditKey::left},
                 {SDLK_RIGHT, EditKey::right},
                 {SDLK_HOME, EditKey::home},
                 {SDLK_END, EditKey::end},
                 {SDLK_BACKSPACE, EditKey::backspace},
                 {SDLK_DELETE, EditKey::erase},
                 {SDLK_UP, EditKey::up},
                 {SDLK_DOWN, EditKey::down},
                 {SDLK_PAGEUP, EditKey::pageUp},
                 {SDLK_PAGEDOWN, EditKey::pageDown},
                 {SDLK_TAB, EditKey::complete},
                 {SDLK_RETURN, EditKey::enter},
                 {SDLK_KP_ENTER, EditKey::enter}};
    for (const auto& entry : table)
        if (entry.key == key)
            return entry.edit;
    return EditKey::none;
}

static bool isFunctionKey(SDL_Keycode key)
{
    return key == SDLK_ESCAPE || (key >= SDLK_F1 && key <= SDLK_F12);
}

static Command commandOf(const SDL_Keysym& key, const std::vector<SDL_Keycode>& commandKeys)
{
    // The console's key is a place, whatever is printed on it.
    if (key.scancode == SDL_SCANCODE_GRAVE)
        return Command::console;
    for (size_t i = 0; i < commandKeys.size(); ++i)
        if (commandKeys[i] != SDLK_UNKNOWN && commandKeys[i] == key.sym)
            return bindings()[i].command;
    if (key.sym == SDLK_KP_PLUS || key.sym == SDLK_KP_MINUS)
        return key.sym == SDLK_KP_PLUS ? Command::taller : Command::shorter;
    return Command::none;
}

// @return false for keys that mean nothing
static bool readKey(const SDL_KeyboardEvent& pressed, bool typing,
                    const std::vector<SDL_Keycode>& commandKeys, Event* event)
{
    const SDL_Keysym& key = pressed.keysym;
    if ((key.mod & KMOD_CTRL) && key.sym == SDLK_q)
    {
        event->kind = Happening::quit;
        return true;
    }
    const Command command = commandOf(key, commandKeys);
    const bool isCommand = !typing || isFunctionKey(key.sym) || command == Command::console;
    if (isCommand)
    {
        event->kind = Happening::command;
        event->command = command;
        // A key that is held repeats only what goes by steps.
        return command != Command::none &&
               (!pressed.repeat || command == Command::stepForward || command == Command::stepBack);
    }
    event->kind = Happening::edit;
    event->key = (key.mod & KMOD_CTRL) && key.sym == SDLK_u ? EditKey::clearLine : editKeyOf(key.sym);
    return event->key != EditKey::none;
}

static bool readMotion(const SDL_MouseMotionEvent& motion, Event* event)
{
    event->kind = Happening::drag;
    event->x = static_cast<float>(motion.xrel);
    event->y = static_cast<float>(motion.yrel);
    event->secondButton = (motion.state & (SDL_BUTTON_RMASK | SDL_BUTTON_MMASK)) != 0;
    return (motion.state & (SDL_BUTTON_LMASK | SDL_BUTTON_RMASK | SDL_BUTTON_MMASK)) != 0;
}

static bool readWindowEvent(const SDL_WindowEvent& change, Event* event)
{
    event->kind = change.event == SDL_WINDOWEVENT_SIZE_CHANGED ? Happening::resized : Happening::exposed;
    return change.event == SDL_WINDOWEVENT_SIZE_CHANGED || change.event == SDL_WINDOWEVENT_EXPOSED;
}

static void takeDropped(char* file, Event* event)
{
    event->kind = Happening::dropped;
    event->text = file;
    SDL_free(file);
}

bool Window::next(Event* event)
{
    SDL_Event happened;
    while (SDL_PollEvent(&happened))
    {
        *event = {};
        switch (happened.type)
        {
        case SDL_QUIT:
            return true;
        case SDL_KEYDOWN:
            if (readKey(happened.key, state->typing, state->commandKeys, event))
                return true;
            break;
        case SDL_TEXTINPUT:
            event->kind = Happening::typed;
            event->text = happened.text.text;
            return true;
        case SDL_MOUSEMOTION:
            if (readMotion(happened.motion, event))
                return true;
            break;
        case SDL_MOUSEWHEEL:
            event->kind = Happening::wheel;
            event->y = happened.wheel.preciseY;
            return true;
        case SDL_DROPFILE:
            takeDropped(happened.drop.file, event);
            return true;
        case SDL_WINDOWEVENT:
            if (readWindowEvent(happened.window, event))
                return true;
            break;
        default:
            break;
        }
    }
    return false;
}

void Window::keepAlive()
{
    SDL_PumpEvents();
}

void Window::wait(int milliseconds)
{
    SDL_WaitEventTimeout(nullptr, milliseconds);
}

Held Window::held() const
{
    Held held;
    if (state->typing || (SDL_GetWindowFlags(state->window) & SDL_WINDOW_INPUT_FOCUS) == 0)
        return held;
    int count = 0;
    const Uint8* keys = SDL_GetKeyboardState(&count);
    for (size_t i = 0; i < state->places.size(); ++i)
        if (state->places[i] < count && keys[state->places[i]])
            held.*(heldKeys()[i].state) = true;
    return held;
}

bool Window::isHidden() const
{
    return (SDL_GetWindowFlags(state->window) & (SDL_WINDOW_HIDDEN | SDL_WINDOW_MINIMIZED)) != 0;
}

void Window::setTitle(const std::string& title)
{
    SDL_SetWindowTitle(state->window, title.c_str());
}

// Without a window manager the window itself takes the screen's size.
static void stretch(SDL_Window* window, bool full, SDL_Rect* before)
{
    SDL_Rect screen = *before;
    if (full)
    {
        SDL_GetWindowPosition(window, &before->x, &before->y);
        SDL_GetWindowSize(window, &before->w, &before->h);
        SDL_GetDisplayBounds(std::max(SDL_GetWindowDisplayIndex(window), 0), &screen);
    }
    SDL_SetWindowPosition(window, screen.x, screen.y);
    SDL_SetWindowSize(window, screen.w, screen.h);
}

void Window::toggleFullScreen()
{
    state->fillsScreen = !state->fillsScreen;
    if (hasWindowManager(state->window))
        SDL_SetWindowFullscreen(state->window, state->fillsScreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    else
        stretch(state->window, state->fillsScreen, &state->before);
}

void Window::setTyping(bool typing)
{
    state->typing = typing;
    typing ? SDL_StartTextInput() : SDL_StopTextInput();
}

double Window::seconds()
{
    static const Uint64 start = SDL_GetPerformanceCounter();
    return static_cast<double>(SDL_GetPerformanceCounter() - start) /
           static_cast<double>(SDL_GetPerformanceFrequency());
}

void Window::sleep(double seconds)
{
    if (seconds > 0.0)
        SDL_Delay(static_cast<Uint32>(seconds * 1000.0));
}

int Window::refreshRate() const
{
    SDL_DisplayMode mode;
    const int display = SDL_GetWindowDisplayIndex(state->window);
    if (display < 0 || SDL_GetCurrentDisplayMode(display, &mode) != 0 || mode.refresh_rate <= 0)
        return 60;
    return mode.refresh_rate;
}

#include "apps/vornik/view/bindings.h"

const std::vector<Binding>& bindings()
{
    static const std::vector<Binding> table = {
        {"", Command::none, "Moving"},
        {"1", Command::orbit, "orbit: drag to turn, right button to shift, wheel to zoom"},
        {"2", Command::fly, "fly: W A S D, E up, Q down, drag to look; Shift fast, Ctrl slow"},
        {"3", Command::walk, "walk on the ground: W A S D, drag to look, Space to jump"},
        {"+", Command::taller, "walk taller, smaller", "+  -"},
        {"-", Command::shorter, nullptr},
        {"=", Command::taller, nullptr},
        {"Home", Command::frameAll, "see the scene; once more: with the sky and all that is far out"},
        {"C", Command::nextCamera, "next camera of the scene, the one before, leave it", "C  X  V"},
        {"X", Command::previousCamera, nullptr},
        {"V", Command::freeCamera, nullptr},
        {"I", Command::tellPlace, "tell where the eye stands, here and on standard output"},
        {"", Command::none, "Animation"},
        {"P", Command::play, "play or pause"},
        {".", Command::stepForward, "one frame on, one frame back", ".  ,"},
        {",", Command::stepBack, nullptr},
        {"Backspace", Command::rewind, "to the start"},
        {"]", Command::faster, "faster, slower", "]  ["},
        {"[", Command::slower, nullptr},
        {"", Command::none, "Drawing"},
        {"F2", Command::figures, "figures of scene and frame"},
        {"F3", Command::wire, "edges only"},
        {"F4", Command::flat, "flat faces"},
        {"F5", Command::untextured, "without images"},
        {"F6", Command::twoSided, "faces from behind, too"},
        {"F7", Command::cull, "skip meshes outside the view"},
        {"F8", Command::transparency, "transparent faces: sorted, mesh by mesh, left out"},
        {"F9", Command::lists, "display lists"},
        {"F10", Command::leaves, "leaves of the octree"},
        {"", Command::none, "Window"},
        {"F1", Command::help, "this help"},
        {"`", Command::console, "console, the key below Escape"},
        {"F11", Command::fullScreen, "full screen"},
        {"F12", Command::screenShot, "screen shot, Shot0000.jpg and on"},
        {"Escape", Command::close, "close help or console, or the viewer"},
    };
    return table;
}

const std::vector<HeldKey>& heldKeys()
{
    static const std::vector<HeldKey> table = {
        {"W", &Held::forward},
        {"S", &Held::back},
        {"A", &Held::left},
        {"D", &Held::right},
        {"E", &Held::up},
        {"Q", &Held::down},
        {"Space", &Held::up},
        {"PageUp", &Held::up},
        {"PageDown", &Held::down},
        {"Up", &Held::forward},
        {"Down", &Held::back},
        {"Left", &Held::turnLeft},
        {"Right", &Held::turnRight},
        {"Left Shift", &Held::fast},
        {"Right Shift", &Held::fast},
        {"Left Ctrl", &Held::slow},
        {"Right Ctrl", &Held::slow},
    };
    return table;
}

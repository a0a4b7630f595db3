// What the keys do: one table for the window, the help on the screen and the tests.
#pragma once

#include <vector>

enum class Command
{
    none,
    help,
    console,
    close, ///< what is open; with nothing open the viewer
    orbit,
    fly,
    walk,
    frameAll,
    nextCamera,
    previousCamera,
    freeCamera,
    play,
    stepForward,
    stepBack,
    rewind,
    faster,
    slower,
    taller,
    shorter,
    wire,
    flat,
    untextured,
    twoSided,
    cull,
    transparency,
    lists,
    leaves,
    figures,
    fullScreen,
    screenShot,
    tellPlace
};

struct Binding
{
    const char* key; ///< as SDL names keys
    Command command;
    const char* text;           ///< for the help; null shares the line above
    const char* keys = nullptr; ///< what the help calls them, where a line is about several
};

/// All of them, in the order of the help; a command of none is a heading.
const std::vector<Binding>& bindings();

/// Keys that act as long as they are held, by their place on the keyboard.
struct Held
{
    bool forward = false, back = false, left = false, right = false;
    bool up = false, down = false; ///< up also jumps
    bool turnLeft = false, turnRight = false;
    bool fast = false, slow = false;
};

/// A key of Held: SDL's name of its place.
struct HeldKey
{
    const char* key;
    bool Held::*state;
};

const std::vector<HeldKey>& heldKeys();

// A surface to draw on that nobody sees.
#pragma once

#include <memory>

#include "vornik/platform.h"

/// Serves one start of the engine, and lives as long as the engine draws on it.
class Surface
{
public:
    /// @param width, height  in pixels
    Surface(int width, int height);
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    ~Surface();

    VRKWindow window() const;

private:
    struct System;
    std::unique_ptr<System> system;
};

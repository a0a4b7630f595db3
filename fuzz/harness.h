// What every target stands on: an engine that draws nothing and reports nowhere, and a folder in memory where
// the input becomes a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Starts the silent engine. Call it first; it does its work once.
void startSilentEngine();

/// The process's folder, with a closing slash. It holds a scene, SCENE.3DS, and an image for every
/// name in the seeds: WALL.JPG, HOLES.TGA, and FIRE.IFL with its frames F1.TGA and F2.TGA.
const std::string& inputFolder();

/// Makes the input the content of a file in the folder. @return its path
std::string inputFile(const char* name, const uint8_t* data, size_t size);

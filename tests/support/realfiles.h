// Scene files by other people, for tests that use them where they are.
#pragma once

#include <filesystem>
#include <vector>

/// Of the package assimp-testmodels; the folder need not exist.
std::filesystem::path packagedScenes();
/// The folder that VORNIK_SCENES names, or shared/scenes beside the checkout; need not exist.
std::filesystem::path sharedScenes();

/// The .3DS files of a folder and those below it, in order; empty if there is no folder.
std::vector<std::filesystem::path> scenesIn(const std::filesystem::path& folder);

/// Content of a file.
std::vector<uint8_t> bytesOf(const std::filesystem::path& file);

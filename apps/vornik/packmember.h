// Finding and reading members of a pack through the engine's reader, as a load will.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The member that a name means: the one of that name, or else the first that ends in it as in a path.
/// Empty if there is none or the pack can't be opened.
std::string findMember(const std::string& pack, const std::string& name);

/// Reads a member whole. @return what went wrong, for people; empty if nothing did
std::string readMember(const std::string& pack, const std::string& name, std::vector<uint8_t>* bytes);

/// The folder part of a member's name; "." if it has none.
std::string folderOf(const std::string& name);

/// The folder of a pack that a user means: counted from the top, or from a member's folder.
/// Empty if no member lies in it.
std::string findFolder(const std::string& pack, const std::string& folder, const std::string& member);

/// Is there a member whose last part is this file's?
bool hasMemberOfFile(const std::string& pack, const std::string& file);

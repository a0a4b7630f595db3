// Bringing members of packs into memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Bytes of the open pack's file. No read makes more, whatever its records say.
uint64_t packLength();

/// The member of the open pack that a tolerant load takes for a name: the one of that name, or else the first
/// whose name differs in the kind of separators or in a leading ".\\" only. Empty if there is none.
std::string resolvePackedName(const std::string& name);

/// Reads a member whole, with one read: opens the pack, takes the member and closes the pack. A pack that
/// doesn't have the member is left open, and so is an open one where packName is null.
/// @param padding  zero bytes to add behind the content
/// @param size     [out] bytes of the member that are there, without the padding
/// @return a malloc block that the caller owns; null if there is no such pack or member, or it is larger than
///         2 GiB
char* readPackedFile(const char* packName, const char* name, size_t padding, size_t* size);

#ifndef VORNIK_ASSETS_PACK_H
#define VORNIK_ASSETS_PACK_H

// Pack files: one file that holds a directory and, behind it, the bytes of many scenes, images and lists.
//
// One pack is open at a time. Failures are told by results only; nothing is logged. Numbers in the file are
// little-endian, and positions count from the first byte behind the directory.

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "vornik/export.h"

enum
{
    VRK_PACK_ENTRY_SIZE = 264,    ///< bytes of a directory record
    VRK_PACK_MOST_ENTRIES = 4096, ///< records of the largest directory, the end mark included
    VRK_PACK_LONGEST_NAME = 255   ///< bytes of a name
};

/// A record of the directory, as in the file.
struct PackEntry
{
    uint32_t start; ///< position of the first byte; 0xFFFFFFFF makes the record the end mark
    uint32_t end;   ///< position of the last byte: start - 1 for an empty member
    char name[256]; ///< upper-cased, terminated
};

/// A member being read.
struct PackHandle
{
    uint32_t position;   ///< of the next read, counted like start and end: it begins at the member's start
    uint32_t entryIndex; ///< into packDirectory
};

extern VRK_API FILE* packStream;         ///< null when no pack is open
extern VRK_API PackEntry* packDirectory; ///< [packEntryCount], a malloc block, owned
extern VRK_API uint32_t packEntryCount;  ///< the end mark included; stays after packClose like the two below
extern VRK_API uint32_t packDirectorySize; ///< bytes: where the data begins in the file
/// Where the stream is taken to stand, so that a read that goes on where the last one ended needs no seek.
/// packOpen sets it to packDirectorySize: a member that starts at just that position gets the first bytes of
/// the data in its first read. Makers of packs put no member there.
extern VRK_API uint32_t packStreamPos;

/// Opens a pack, found like any other file, and reads its directory. A pack that is still open is closed.
/// @return 0, or 1 if the file can't be opened, ends within its first record or has a larger directory than
///         VRK_PACK_MOST_ENTRIES. A directory without an end mark ends with the file; what stands there then
///         is a record, too.
VRK_API int packOpen(const char* name);
/// Closes the pack, if one is open. Handles mean nothing any more. @return 0
VRK_API int packClose();

/// Opens a member. The caller owns the handle until packFileClose.
/// @param name  compared whole, but for case: where two members have it, the first is meant
/// @param mode  not looked at
/// @return null if no pack is open or there is no such member
VRK_API PackHandle* packFileOpen(const char* name, const char* mode);
/// @return 1, or 0 for null
VRK_API int packFileClose(PackHandle* handle);
/// Bytes of the member by its record; 0 for null, without a pack, and for a member the directory doesn't
/// have.
VRK_API uint32_t packFileSize(const PackHandle* handle);
/// Reads like fread. Isn't stopped by the member's end: what lies behind it comes next. The position moves by
/// what was asked for, also where the file ends earlier.
/// @return items read; 0 for null, without a pack, and for a request that no memory could hold
VRK_API size_t packFileRead(void* buffer, size_t size, size_t count, PackHandle* handle);
/// @return 1 once the position has passed the member's end, compared as signed numbers, and for all that
///         packFileSize answers with 0; else 0
VRK_API int packFileEof(const PackHandle* handle);
/// Index of the first record of that name, the end mark's included; -1 if there is none.
VRK_API int packFindEntry(const char* name);

#endif

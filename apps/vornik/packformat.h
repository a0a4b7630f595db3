// The form of pack files, for all that writes or checks them. Their reader is the engine's,
// vornik/assets/pack.h.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

enum : uint32_t
{
    packEndMark = 0xFFFFFFFF, ///< start of the record that ends the directory
    mostPackMembers = 4095    ///< the end mark takes one record
};

/// One record of 264 bytes; the name is cut to its field. Tests write broken ones.
void appendPackRecord(std::vector<uint8_t>* directory, uint32_t start, uint32_t end, const std::string& name);

/// As readers compare names.
std::string upperName(std::string name);

/// The name under which a loader asks for a path: upper-cased, with backslashes.
std::string memberName(const std::string& path);

/// Does a name end in .IFL?
bool isImageList(const std::string& name);

/// A member of a pack in the making.
struct PackMember
{
    std::string name;
    uint64_t size = 0;
    size_t source = 0;  ///< the maker's own number of it
    uint32_t start = 0; ///< its place, from layOutPack
};

/// Gives every member its place. Lists come first, each with a line feed behind it, so that a list without a
/// last one ends where it should; and no member starts at the place that the reader's first read mistakes for
/// the beginning of the data.
/// @return what speaks against the pack, for people; empty if nothing does
std::string layOutPack(std::vector<PackMember>* members);

/// Writes a pack that has been laid out. @param copy  writes all bytes of a member, or returns false
/// @return false where copy did or the stream failed
bool writePack(std::ostream& out, const std::vector<PackMember>& members,
               const std::function<bool(const PackMember&, std::ostream&)>& copy);

/// A file to be packed in memory.
struct PackContent
{
    std::string name;
    std::string bytes;
};

/// The bytes of a whole pack; empty if the files can't be packed.
std::string buildPack(const std::vector<PackContent>& files);

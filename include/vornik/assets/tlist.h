#ifndef VORNIK_ASSETS_TLIST_H
#define VORNIK_ASSETS_TLIST_H

// The materials of one load, by number and by name, and the directory of their images.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Material;

/// Owns its materials. Begins with the material "VRKDefault", number 0, for faces without a usable one.
class VRK_API TList
{
public:
    Material* first; ///< linked through Material::next; never null
    /// Never read.
    uint32_t unused;
    char baseDirectory[256]; ///< ends in a backslash

    TList();
    TList(const TList&) = delete;
    TList& operator=(const TList&) = delete;
    ~TList();

    /// Appends and numbers the material, one above the last. @return 0
    int addMaterial(Material* material);
    /// Removes and destroys. The numbers of the others stay. @return 0, 5 (not found) or 23 (the first),
    /// logged
    int delMaterial(const char* name);
    /// By exact name; null if there is none.
    Material* seekMaterial(const char* name);
    /// The end of the list.
    Material* seekLastMaterial();
    /// The one before it; null for the first and for strangers.
    Material* getPrevious(Material* material);
    /// @param directory  cut to fit with a closing backslash, which is added where it lacks
    void setBaseDirectory(const char* directory);
    /// The number, or 5 when not found, logged.
    int getMaterialID(const char* name);
    /// The same by pointer; 5 for null, logged.
    int getMaterialID(Material* material);
    /// By number; null if there is none.
    Material* getMaterial(int id);

    /// Takes ownership of a malloc block that materials of this list point at: it is freed with the list.
    /// @return false if memory doesn't suffice; the block is then freed at once
    bool keepColor(Color* color);

private:
    struct KeptColor;
    KeptColor* keptColors;
};

#endif

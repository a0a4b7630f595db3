#include "vornik/assets/tlist.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

#include "assets/livinglists.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/material.h"

struct TList::KeptColor
{
    Color* color;
    KeptColor* next;
};

// All lists that exist. Never destroyed, since lists may be static objects of the host.
static std::vector<TList*>& livingLists()
{
    static std::vector<TList*>& lists = *new std::vector<TList*>;
    return lists;
}

bool isInAnyList(const Material* material)
{
    for (const TList* list : livingLists())
        for (const Material* listed = list->first; listed; listed = listed->next)
            if (listed == material)
                return true;
    return false;
}

TList::TList() : first(new Material), unused(0), baseDirectory{}, keptColors(nullptr)
{
    Color* color = static_cast<Color*>(std::malloc(sizeof(Color)));
    if (color && keepColor(color))
        *color = {0.5f, 0.0f, 0.2f, 1.0f};
    else
        color = nullptr;
    first->setName("VRKDefault");
    first->addAmbientColor(color);
    first->addDiffuseColor(color);
    first->addSpecularColor(color);
    first->next = nullptr;
    first->selfIllumination = 0.0f;
    first->id = 0;
    livingLists().push_back(this);
}

TList::~TList()
{
    std::erase(livingLists(), this);
    while (first)
    {
        Material* material = first;
        first = material->next;
        delete material;
    }
    while (keptColors)
    {
        KeptColor* kept = keptColors;
        keptColors = kept->next;
        std::free(kept->color);
        delete kept;
    }
}

bool TList::keepColor(Color* color)
{
    auto* kept = new (std::nothrow) KeptColor{color, keptColors};
    if (!kept)
    {
        std::free(color);
        return false;
    }
    keptColors = kept;
    return true;
}

int TList::addMaterial(Material* material)
{
    Material* last = seekLastMaterial();
    last->next = material;
    material->id = last->id + 1;
    return 0;
}

int TList::delMaterial(const char* name)
{
    Material* material = seekMaterial(name);
    if (!material)
        return vrkPutToErrorLog("Material/Texture not found", 5);
    Material* previous = getPrevious(material);
    if (!previous)
        return vrkPutToErrorLog("Could not delete material! Possible memoryleak or program crash!", 23);
    previous->next = material->next;
    delete material;
    return 0;
}

Material* TList::seekMaterial(const char* name)
{
    for (Material* material = first; material; material = material->next)
        if (std::strcmp(material->name, name) == 0)
            return material;
    return nullptr;
}

Material* TList::seekLastMaterial()
{
    Material* last = first;
    while (last->next)
        last = last->next;
    return last;
}

Material* TList::getPrevious(Material* material)
{
    if (!material)
        return nullptr;
    for (Material* previous = first; previous; previous = previous->next)
        if (previous->next == material)
            return previous;
    return nullptr;
}

void TList::setBaseDirectory(const char* directory)
{
    // Room is kept for the closing backslash.
    const size_t room = sizeof baseDirectory - 2;
    size_t length = strnlen(directory, room);
    std::memcpy(baseDirectory, directory, length);
    if (length == 0 || baseDirectory[length - 1] != '\\')
        baseDirectory[length++] = '\\';
    baseDirectory[length] = 0;
}

int TList::getMaterialID(const char* name)
{
    return getMaterialID(seekMaterial(name));
}

int TList::getMaterialID(Material* material)
{
    if (!material)
        return vrkPutToErrorLog("Material/Texture not found", 5);
    return material->id;
}

Material* TList::getMaterial(int id)
{
    for (Material* material = first; material; material = material->next)
        if (material->id == id)
            return material;
    return nullptr;
}

#include "assets/loadmaterials.h"

#include <map>
#include <string>

#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"

TList* loaderMaterials = nullptr;

// The first of each name. Sorted: a file may choose its names so that they share one place of a hash table.
static std::map<std::string, Material*> materialsByName;
static Material* lastMaterial = nullptr; // null outside a load

void beginMaterials(TList* list)
{
    endMaterials();
    loaderMaterials = list;
    for (Material* material = list ? list->first : nullptr; material; material = material->next)
    {
        materialsByName.emplace(material->name, material);
        lastMaterial = material;
    }
}

void endMaterials()
{
    materialsByName.clear();
    lastMaterial = nullptr;
}

bool addLoadedMaterial(Material* material)
{
    if (!loaderMaterials)
        return false;
    if (!lastMaterial)
    {
        loaderMaterials->addMaterial(material);
        return true;
    }
    lastMaterial->next = material;
    material->id = lastMaterial->id + 1;
    lastMaterial = material;
    materialsByName.emplace(material->name, material);
    return true;
}

Material* findLoadedMaterial(const char* name)
{
    if (!lastMaterial)
        return loaderMaterials ? loaderMaterials->seekMaterial(name) : nullptr;
    const auto found = materialsByName.find(name);
    return found == materialsByName.end() ? nullptr : found->second;
}

#include "scene/materialtable.h"

#include <algorithm>

#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"

enum
{
    tableSize = 4096 // numbers from 0; lists number their materials from there
};

static const TList* noted = nullptr;
static Material* table[tableSize];
static int used = 0; // entries that may be set

NotedMaterials::NotedMaterials(const TList* list)
{
    noted = list;
    std::fill(table, table + used, nullptr);
    used = 0;
    for (Material* material = list ? list->first : nullptr; material; material = material->next)
    {
        if (material->id < 0 || material->id >= tableSize)
            continue;
        // Of two of one number the first is meant.
        if (!table[material->id])
            table[material->id] = material;
        used = std::max(used, material->id + 1);
    }
}

NotedMaterials::~NotedMaterials()
{
    noted = nullptr;
}

Material* findMaterial(TList* list, int id)
{
    if (list == noted && id >= 0 && id < tableSize)
        return table[id];
    return list->getMaterial(id);
}

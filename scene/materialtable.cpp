#include "scene/materialtable.h"

#include <algorithm>
#include <unordered_map>

#include "core/memorylasts.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"

enum
{
    tableSize = 4096 // numbers from 0; lists number their materials from there
};

static const TList* noted = nullptr;
static Material* table[tableSize];
static int used = 0; // entries that may be set

// The numbers that the table has no room for. Without it a mesh of many materials would walk a long list once
// for each of them.
static std::unordered_map<int, Material*>& otherNumbers()
{
    static auto& numbers = *new std::unordered_map<int, Material*>;
    return numbers;
}
static bool othersNoted = false; // all of them

static bool isInTable(int id)
{
    return id >= 0 && id < tableSize;
}

NotedMaterials::NotedMaterials(const TList* list) : isFirst(!noted && list)
{
    if (!isFirst)
        return;
    noted = list;
    std::fill(table, table + used, nullptr);
    used = 0;
    othersNoted = whileMemoryLasts(
        [list]
        {
            for (Material* material = list->first; material; material = material->next)
                if (!isInTable(material->id))
                    otherNumbers().emplace(material->id, material);
        });
    for (Material* material = list->first; material; material = material->next)
    {
        if (!isInTable(material->id))
            continue;
        // Of two of one number the first is meant.
        if (!table[material->id])
            table[material->id] = material;
        used = std::max(used, material->id + 1);
    }
}

NotedMaterials::~NotedMaterials()
{
    if (!isFirst)
        return;
    noted = nullptr;
    if (!otherNumbers().empty())
        std::unordered_map<int, Material*>().swap(otherNumbers());
}

Material* findMaterial(TList* list, int id)
{
    if (list != noted || (!isInTable(id) && !othersNoted))
        return list->getMaterial(id);
    if (isInTable(id))
        return table[id];
    const auto found = otherNumbers().find(id);
    return found == otherNumbers().end() ? nullptr : found->second;
}

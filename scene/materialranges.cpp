#include "scene/materialranges.h"

#include <cstdlib>
#include <cstring>

static size_t rangeBytes(int count)
{
    return sizeof(MaterialFaceRange) * static_cast<size_t>(count > 0 ? count : 1);
}

MaterialFaceList* makeMaterialRanges(int count)
{
    MaterialFaceList* list = static_cast<MaterialFaceList*>(std::malloc(sizeof(MaterialFaceList)));
    if (!list)
        return nullptr;
    list->count = count;
    list->ranges = static_cast<MaterialFaceRange*>(std::malloc(rangeBytes(count)));
    if (!list->ranges)
    {
        std::free(list);
        return nullptr;
    }
    return list;
}

MaterialFaceList* copyMaterialRanges(const MaterialFaceList* from)
{
    if (!from)
        return nullptr;
    const int count = from->ranges && from->count > 0 ? from->count : 0;
    MaterialFaceList* list = makeMaterialRanges(count);
    if (list && count > 0)
        std::memcpy(list->ranges, from->ranges, rangeBytes(count));
    return list;
}

void releaseMaterialRanges(Mesh* mesh)
{
    if (mesh->materialFaces)
        std::free(mesh->materialFaces->ranges);
    std::free(mesh->materialFaces);
    mesh->materialFaces = nullptr;
}

// Materials by number, for as long as a list can't change.
#pragma once

class Material;
class TList;

/// Notes the materials of a list until it goes. One at a time; nothing is allocated.
class NotedMaterials
{
public:
    explicit NotedMaterials(const TList* list);
    NotedMaterials(const NotedMaterials&) = delete;
    NotedMaterials& operator=(const NotedMaterials&) = delete;
    ~NotedMaterials();
};

/// What list->getMaterial(id) finds: at once for the list that is noted, else by its walk.
Material* findMaterial(TList* list, int id);

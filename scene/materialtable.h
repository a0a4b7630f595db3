// Materials by number, for as long as a list can't change.
#pragma once

class Material;
class TList;

/// Notes the materials of a list until it goes. One at a time: a second one is without effect. Nothing is
/// allocated for lists that number their materials below 4,096.
class NotedMaterials
{
public:
    explicit NotedMaterials(const TList* list);
    NotedMaterials(const NotedMaterials&) = delete;
    NotedMaterials& operator=(const NotedMaterials&) = delete;
    ~NotedMaterials();

private:
    bool isFirst;
};

/// What list->getMaterial(id) finds: at once for the list that is noted, else by its walk.
Material* findMaterial(TList* list, int id);

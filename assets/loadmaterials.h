// The material list of the running load.
//
// A TList numbers and finds its materials by walking. While a file is read, a table and the last material
// stand beside it, so that files with very many materials load in linear time.
#pragma once

class Material;
class TList;

/// The list being filled; null if materials aren't loaded. Keeps its value after the load.
extern TList* loaderMaterials;

/// Starts to fill a list. @param list  may be null
void beginMaterials(TList* list);
/// Drops the table.
void endMaterials();

/// What TList::addMaterial does. The material has its name. Without a list nothing happens. @return whether
/// the list took it
bool addLoadedMaterial(Material* material);
/// What TList::seekMaterial finds.
Material* findLoadedMaterial(const char* name);

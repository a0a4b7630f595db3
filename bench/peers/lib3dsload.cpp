// lib3ds, with the normals that its hosts compute through it, one for each corner.
//
// The library is opened by name: linked, its functions would take the place of those that OpenSceneGraph's
// reader brings along under the same names.

#include <dlfcn.h>
#include <lib3ds/file.h>
#include <lib3ds/mesh.h>
#include <lib3ds/vector.h>

#include <memory>
#include <vector>

#include "bench/peers/loads.h"
#include "bench/peers/timing.h"

template <class Function>
static Function* find(const char* name, Function*)
{
    static void* const library = dlopen(LIB3DS_FILE, RTLD_NOW | RTLD_LOCAL);
    return library ? reinterpret_cast<Function*>(dlsym(library, name)) : nullptr;
}

#define FIND(function) find(#function, decltype (&(function))(nullptr))

Loaded loadWithLib3ds(const char* file)
{
    static const auto loadFile = FIND(lib3ds_file_load);
    static const auto freeFile = FIND(lib3ds_file_free);
    static const auto calculateNormals = FIND(lib3ds_mesh_calculate_normals);
    if (!loadFile || !freeFile || !calculateNormals)
        return {0, 0};
    const double begin = processorSeconds();
    Lib3dsFile* const scene = loadFile(file);
    if (!scene)
        return {0, 0};
    std::vector<std::unique_ptr<Lib3dsVector[]>> normals;
    size_t triangles = 0;
    for (Lib3dsMesh* mesh = scene->meshes; mesh; mesh = mesh->next)
    {
        normals.emplace_back(new Lib3dsVector[size_t(mesh->faces) * 3]);
        if (mesh->faces > 0)
            calculateNormals(mesh, normals.back().get());
        triangles += mesh->faces;
    }
    const double seconds = processorSeconds() - begin;
    freeFile(scene);
    return {seconds, triangles};
}

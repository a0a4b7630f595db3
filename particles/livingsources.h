// What all particle sources together know.
#pragma once

class Material;

/// Takes a material that is being destroyed from every source that has it.
void forgetMaterial(const Material* material);

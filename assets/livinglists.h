// What all material lists together know.
#pragma once

class Material;

/// Is the material in any list that exists?
bool isInAnyList(const Material* material);

#ifndef VORNIK_SCENE_MATERIAL_H
#define VORNIK_SCENE_MATERIAL_H

// How a range of faces is drawn. Materials live in the linked list TList and are found by number.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Texture;

/// How faces are drawn: images, colours, opacity and switches.
class VRK_API Material
{
public:
    /// Terminated; what TList::seekMaterial compares.
    char name[256];
    int32_t id;             ///< number in the TList; what Mesh::faceMaterials refers to
    float selfIllumination; ///< 0 to 1: light that a vertex has before any lamp acts
    float transparency; ///< 0 opaque; anything else sends the faces to the transparent passes as their alpha
    Texture* firstTexture;      ///< the image that all passes bind; owned
    Texture* secondTexture;     ///< stored only; owned
    Texture* opacityTexture;    ///< input of calcAlpha; owned
    Texture* reflectionTexture; ///< image of the reflection pass; owned
    Color* ambient;             ///< not owned
    Color* specular;            ///< not owned
    Color* diffuse;             ///< not owned
    Material* next;             ///< next in the TList
    /// 0 if the file says so; drawing doesn't ask.
    uint8_t tiled;
    /// Drawn without culling.
    uint8_t twoSided;
    /// Drawn as edges.
    uint8_t wire;
    float wireSize; ///< stored only

    Material();
    Material(const Material&) = delete;
    Material& operator=(const Material&) = delete;
    /// Destroys the textures. Colours are often shared and stay.
    ~Material();

    /// @param text  cut to 255 characters
    void setName(const char* text);

    /// Stores the pointer and takes ownership; a previous texture is dropped, not destroyed. @return 0
    ///@{
    int addFirstTexture(Texture* texture);
    int addSecondTexture(Texture* texture);
    int addOpacityTexture(Texture* texture);
    int addReflectionTexture(Texture* texture);
    ///@}
    /// Stores the pointer without owning it. @return 0
    ///@{
    int addAmbientColor(Color* color);
    int addSpecularColor(Color* color);
    int addDiffuseColor(Color* color);
    ///@}

    /// Folds the opacity image into the alpha of the first texture's image, scaling it to that size, and
    /// makes the material transparent. Without either image only the first texture's environment changes,
    /// to 12.
    void calcAlpha();

    /// Gives a material without image a 4 x 4 texture of its diffuse colour and uploads it.
    /// @return 0, 30 (no diffuse colour) or 11 (no texture name), logged
    int makeTextureFromColor();
};

#endif

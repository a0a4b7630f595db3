#ifndef VORNIK_LIGHTING_VERTEXLIGHT_H
#define VORNIK_LIGHTING_VERTEXLIGHT_H

// Flags of the lighting operations of OGroup and Scene.

/// For OGroup::calcDynamicLight and its kin.
enum VRKLightFlag
{
    VRK_LIGHT_CLEAR = 1,             ///< start from black, or in a group from self-illumination
    VRK_LIGHT_SHADOWS = 2,           ///< test each vertex with a shadow ray
    VRK_LIGHT_SUBTRACT = 4,          ///< take the light away instead of adding it
    VRK_LIGHT_SELF_ILLUMINATION = 8, ///< Scene only: the self-illumination pass instead of a light
    VRK_LIGHT_GAMMA = 16             ///< Scene only: the gamma pass instead of a light
};

#endif

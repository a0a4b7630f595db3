// The images of the harbour, each painted anew from noise and geometry.
#pragma once

#include "samples/painting.h"

namespace sample
{

constexpr int animationFrames = 16; ///< of an image that changes

// Stone and walls, texturestone.cpp.
Image paintPaving();
Image paintQuayWall();
Image paintRock();
Image paintBricks();
Image paintTimberFrame();
Image paintPlaster(Rgba colour, uint32_t seed);
Image paintLighthouse();

// Wood, iron and cloth, texturewood.cpp.
Image paintPlanks(Rgba light, Rgba dark, int boards, uint32_t seed);
Image paintMast();
Image paintHulls(); ///< four bands, one above the other
Image paintBarrel();
Image paintCrate();
Image paintIron();
Image paintBrass();
Image paintCanvas();
Image paintAwning();

// Roofs, windows and doors, texturehouse.cpp.
Image paintRoofTiles();
Image paintSlates();
Image paintWindows(); ///< four columns; lower row lit, upper row dark; the last column holds shutters
Image paintDoors();   ///< four columns
Image paintLampGlass(int frame); ///< a flame behind glass

// Sky, water and plants, texturenature.cpp.
/// Colour of the sky in a direction that points up. sun is a unit vector.
Rgba skyColour(Vec3 direction, Vec3 sun);
/// Half of the dome from an azimuth over 180 degrees; v as in skyHeight.
Image paintSky(float fromAzimuth, Vec3 sun);
/// Elevation in radians of a row of the sky image: rows lie closer to each other near the horizon.
float skyElevation(float v);
Image paintWater();
Image paintHills();
Image paintFarHills();
Image paintGrass();
Image paintLeaves();
Image paintIvy();
Image paintFlowers();
Image paintReflection(Vec3 sun);

// Images that are mostly see-through, texturerope.cpp.
Image paintRope();
Image paintNet();
Image paintRatlines();
Image paintGlow();
Image paintShade();
Image paintGlitter(int frame);
Image paintSail(); ///< of a windmill: a lattice with cloth on a part of it
Image paintGull();

} // namespace sample

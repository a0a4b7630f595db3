#pragma once

/// Fills vrkConvertCapTableOGL with the numbers of Direct3D. Those that repeat the index mean that rasterizer
/// 1 acts on the index itself.
void fillDirect3DConstants();

// The keyframes of the running load.
#pragma once

class PathList;

/// The list being filled. Keeps its value after the load.
extern PathList* loaderPaths;
/// The keyframer chunk was read to its end.
extern bool keyframesRead;

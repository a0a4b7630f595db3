// Finding the tracks of an object.
#pragma once

class Object;
class PathList;
class VRKPath;

/// The tracks that move an object; null for those that it lacks.
struct Tracks
{
    const VRKPath* position = nullptr;
    const VRKPath* rotation = nullptr;
};

/// The first path of an object and a kind in a list. @param nodeType  0 for any
VRKPath* findTrack(const PathList& list, const Object* object, int kind, int nodeType = 0);

using FindTracks = Tracks (*)(const PathList& list, const Object* object);

/// Walks the list.
Tracks findTracks(const PathList& list, const Object* object);

/// Notes all tracks of a list, for as long as neither list nor paths change. One list at a time; nothing is
/// allocated.
void noteTracks(const PathList& list);
/// What findTracks finds, at once, in the list that was noted last.
Tracks findNotedTracks(const PathList& list, const Object* object);

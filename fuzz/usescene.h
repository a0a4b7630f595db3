// What a host does with a scene that it has loaded.
#pragma once

class OGroup;
class Scene;

/// Plays, draws, lights and asks the group.
void useScene(Scene* scene, OGroup* group);

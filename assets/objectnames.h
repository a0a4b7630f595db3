// Objects of a group by name while a file is read: files name them again and again, and a group only grows
// then.
#pragma once

class Object;
class OGroup;

/// Notes the names of a group's objects as they are asked for, until endObjectNames.
void beginObjectNames(OGroup* group);
void endObjectNames();
/// What group->findObject(name) finds; by its walk outside a load. What is in the group keeps its name.
Object* findNamedObject(OGroup* group, const char* name);

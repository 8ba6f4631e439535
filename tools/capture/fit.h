// Limits every value of a world to what the world file can hold.
#pragma once

#include "simulator/world/world.h"
#include "tools/capture/notes.h"

// Numbers are moved into their range, texts and lists are cut; each change is noted.
void fitWorld(q5sim::World* world, Notes* notes);

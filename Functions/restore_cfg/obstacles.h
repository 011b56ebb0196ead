// What stands in the way of a restore, found out by reading only.
#pragma once

#include <string>
#include <vector>

#include "Public/cfg/raidConfig.h"

// A line for each reason why the present virtual disks and spares cannot be deleted or why those that are wanted could
// not be made in their place: "virtual disk 1 'data': disk 7 is not there". None: nothing is known to speak against it.
// The library may still refuse for reasons of its own.
std::vector<std::string> findObstacles(const CfgRaid& present, const CfgRaid& wanted);

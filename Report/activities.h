// What goes on: the activities of virtual disks, arrays and disks, and how long they will take.
#pragma once

#include <vector>

#include "Report/look.h"

enum class ActivityOf { VirtualDisk, Array, Disk };

struct Going {
    ActivityOf of;
    KT_U64 id;
    std::string name;  // "virtual disk 1 \"media\""
    std::string title; // its own name alone: "media"; a disk has none
    std::string kind;  // "rebuild", "media patrol"; "activity" for one without a word
    std::string state;
    std::optional<KT_U64> percent;
    std::optional<KT_U64> secondsLeft; // as the log tells its speed; only while it runs
};

// All of an adapter that have not ended, those of virtual disks first. An array's own counts only when none of its
// virtual disks tells of it.
std::vector<Going> activitiesOf(const Json& adapter);

// What is wanted: a lab or a report, as the values that planning works on.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Report/json.h"

// Something that cannot be: where in the wanted file, and why.
struct Reason {
    std::string place; // "adapters[0].disks[3].serial"
    std::string text;  // a sentence without its full stop, safe to print
};

// A disk by its serial number, its bay or its id, or by what it is.
struct WantedDisk {
    std::string place;
    std::string serial, type, on;
    std::optional<KT_U64> id, parent, port, enclosure, slot;
    KT_U64 size = 0; // at least
};

// The numbers of `disks` are those that the file's own list of disks counts by, or ids when it has no such list.
struct WantedLayout {
    std::string level;
    std::vector<KT_U64> disks;
    std::optional<KT_U64> parity, stripe;
};

struct WantedVd {
    std::string place, name, guid;
    WantedLayout layout; // outside arrays
    std::optional<KT_U64> size;
    std::string cache;
    std::optional<bool> readAhead;
};

struct WantedArray {
    std::string place, name;
    WantedLayout layout;
    std::vector<KT_U64> spares;
    std::optional<bool> writeCache;
    std::vector<WantedVd> vds;
};

struct WantedAdapter {
    std::string place, serial;
    std::optional<KT_U64> id;
    std::string type; // "" when the file does not say
    bool listsDisks = false;
    std::map<KT_U64, WantedDisk> disks;
    std::vector<KT_U64> spares; // global ones
    std::set<KT_U64> spareAtWork;
    std::vector<WantedArray> arrays;
    std::vector<WantedVd> vds;
    std::map<std::string, KT_U64> config;
};

struct Wanted {
    std::vector<WantedAdapter> adapters;
    std::vector<Reason> reasons; // all that is wrong with the file by itself
};

// Reads a wanted file's JSON. What is wrong with it is collected, all of it; nothing is thrown.
Wanted wantedIn(const Json& file);

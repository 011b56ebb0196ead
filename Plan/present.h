// What is there, as a report tells it, in the values that planning works on.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Report/json.h"

// The disks of an array or of a virtual disk outside arrays, and what they are made into. Sizes are in bytes
// everywhere, stripes in KiB.
struct PresentLayout {
    std::string level;                        // "RAID5"
    std::vector<std::optional<KT_U64>> disks; // by slot; none where one is missing
    KT_U64 parity = 0;
    KT_U64 stripe = 0;
};

struct PresentDisk {
    KT_U64 id = 0;
    std::string serial;
    std::string type; // "SAS SSD"
    std::string on;   // "HBA", "expander" ...
    std::optional<KT_U64> parent, port, enclosure, slot;
    KT_U64 size = 0;
    KT_U64 room = 0;     // what of it data can lie on
    KT_U64 freeRoom = 0; // what of that is free
    KT_U64 sector = 512;
    std::string state; // "healthy", "offline", "foreign"
    bool member = false;
    bool spare = false;
    bool spareInUse = false;
    std::optional<KT_U64> spareOf; // the array that a dedicated spare is for
    bool os = false;
    bool fileSystem = false;
};

struct PresentVd {
    KT_U64 id = 0;
    std::string name, guid, status;
    PresentLayout layout;
    KT_U64 size = 0;
    std::string cache; // "on", "off", "auto"; "" for one that has no word
    std::optional<bool> readAhead;
    bool os = false;
    bool busy = false;      // something goes on with it
    bool migrating = false; // the layout and the size are those that it migrates to
    bool redundant = false; // by the level that it has now
};

// A stretch of an array: a virtual disk's, or free.
struct PresentSlot {
    KT_U64 size = 0;
    std::optional<KT_U64> vd;
};

struct PresentArray {
    KT_U64 id = 0;
    std::string name;
    PresentLayout layout;
    KT_U64 memberSize = 0; // on each of its disks
    std::optional<bool> writeCache;
    std::vector<PresentSlot> slots;
    std::vector<PresentVd> vds;
    bool busy = false;
    bool migrating = false;
    bool redundant = false; // by the level that it has now
};

struct PresentAdapter {
    KT_U64 id = 0;
    std::string serial;
    std::string name; // "adapter 0 (Tarn R8i, serial KS26)"
    bool arrayBased = false;
    bool sharesDisks = false; // virtual disks outside arrays may share their disks
    bool battery = false;     // there is one behind the cache
    std::set<std::string> levels, features, advanced;
    std::set<KT_U64> stripes;
    std::map<std::string, KT_U64> limits, config;
    std::map<KT_U64, PresentDisk> disks;
    std::vector<PresentArray> arrays;
    std::vector<PresentVd> vds; // outside arrays
};

// A report does not tell all that planning needs; the message says what is missing.
struct IncompleteReport {
    std::string message;
};

// The adapters of a report (Report/load.h, Report/document.h). Throws IncompleteReport.
std::vector<PresentAdapter> adaptersIn(const Json& report);

// How things are called in sentences.
std::string nameOf(const PresentDisk& disk);
std::string nameOf(const PresentVd& vd);
std::string nameOf(const PresentArray& array);

// The one with the id; it must be there.
PresentArray& arrayWith(PresentAdapter& adapter, KT_U64 id);
const PresentArray& arrayWith(const PresentAdapter& adapter, KT_U64 id);
// In an array or outside.
const PresentVd& vdWith(const PresentAdapter& adapter, KT_U64 id);

// Reading adapters: every list once, page by page, and of each item only what no list tells. Nothing is changed, no
// call is made twice with the same arguments, and whatever the library refuses is noted.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ktraid.h"

// What the library refused to tell.
struct Refusal {
    int adapter; // -1: the library as a whole
    std::string call;
    std::optional<KT_U8> status; // none: the call succeeded, or was not there, and its answer is of no use
    std::string text;
    std::vector<unsigned> ids; // of the items that were asked for one by one
};

struct DiskReading {
    _HD_Info info = {};
    std::optional<_HD_RAID_STATUS> raid;
    std::optional<_HD_CONFIG> config;
    std::optional<_HD_BGA_STATUS> activity;
    std::optional<_HD_SMART_STATUS> smart;
    std::optional<_HD_FreeSpaceInfo> space;
    std::optional<_Device_Magic> magic;
    std::optional<bool> os;
    std::optional<bool> mbr;
    std::optional<std::vector<_SMART_Attribute>> attributes;
};

struct VdReading {
    _LD_Info info = {};
    std::optional<_LD_STATUS> status;
    std::optional<_LD_Config> config;
    std::optional<_LD_Info> target;
    std::optional<_Tandemix_Table_Info> table;
    std::optional<_Device_Magic> magic;
    std::optional<KT_U16> link; // the disk that it is linked to; KT_NO_ID: none
    std::optional<bool> os;
};

struct ArrayReading {
    _DG_Info info = {};
    std::optional<_DG_CONFIG> config;
};

// The elements of one type in an enclosure.
struct ElementType {
    _Enc_Element_Config whole = {};
    std::vector<std::optional<_Enc_Element_Info>> elements;
    std::vector<std::optional<_Enc_Element_Config>> configs;
};

struct EnclosureReading {
    _Enclosure_Info info = {};
    std::vector<ElementType> types;
};

struct PortReading {
    KT_U8 id = 0;
    KT_U8 entry = 0; // 255: linked to none
    std::optional<_AES_Port_Config> config;
    std::optional<_AES_PORT_INFO> info;
};

// Items by their id. An optional is empty when the library did not tell.
struct AdapterReading {
    KT_U8 index = 0;
    std::optional<_Adapter_Info> info;
    std::optional<_Adapter_Config_V2> config;
    std::optional<_BBU_Info> battery;
    std::optional<std::map<KT_U16, DiskReading>> disks;
    std::optional<std::map<KT_U16, VdReading>> virtualDisks;
    std::optional<std::map<KT_U16, ArrayReading>> arrays;
    std::optional<std::map<KT_U16, _Block_Info>> blocks;
    std::optional<std::map<KT_U16, _Exp_Info>> expanders;
    std::optional<std::map<KT_U16, _PM_Info>> portMultipliers;
    std::optional<std::map<KT_U16, EnclosureReading>> enclosures;
    std::optional<std::vector<_Event>> events; // oldest first
    std::optional<std::map<KT_U8, std::optional<_AES_ENTRY_INFO>>> keys;
    std::vector<PortReading> ports;
    std::optional<_HBA_Info_Page> settings;
};

struct ReadOptions {
    int adapter = -1;        // the only adapter to read; -1: all
    bool records = false;    // also what only a twin needs: the settings page, and every field of every record
    bool attributes = true;  // the drives' own tables of health stand in the document
    bool onlyEvents = false; // of each adapter its record and its log
    bool onlyLayout = false; // without elements of enclosures, keys and the drives' own tables of health
};

struct Machine {
    KT_U64 made = 0; // seconds since 1970
    std::string host;
    std::optional<std::string> libraryVersion;
    std::optional<int> sgVersion; // 30536 is 3.5.36
    bool opened = false;          // the library started; else the first refusal says why not
    unsigned adapterCount = 0;    // as the library counts
    std::vector<AdapterReading> adapters;
    std::vector<Refusal> refusals;
    ReadOptions options;
};

// The adapters cannot be read at all; what() says why, in one line.
struct ReadFailure {
    std::string message;
};

// Adapters that are read at most.
inline constexpr unsigned ADAPTERS_READ = 16;

// Opens the library, reads and closes it. Throws ReadFailure when the library lacks what every reading needs, or has no
// adapter options.adapter; a library that does not open is noted.
Machine readMachine(const ReadOptions& options);

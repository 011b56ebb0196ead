// The two things that a restore reads before it changes anything: the adapter's settings page and the configuration
// file.
#pragma once

#include <string>

#include "Public/cfg/raidConfig.h"
#include "Public/cfg/reader.h"
#include "Public/options.h"
#include "Public/wholeFile.h"

// What restoring, and the check before it, are told.
struct RestoreOptions {
    std::string file;
    bool autoset = false; // restoring only
    bool raid = false;
    KT_U8 mode = CFG_FULL_FORM;
};

// Takes the options that both have: f, r and t. `wrongType` begins the message about another type than "phy".
Take takeRestoreOption(int option, const char* value, const char* wrongType, RestoreOptions& o);

// A file as it is, and with its comments blanked.
struct CfgFile {
    std::string path;
    std::string shown;
    std::string text;
    std::string clean;
};

void useFile(CfgFile& file, const std::string& path);

// Reads the file and blanks the comments in a copy. One that is too big is said to be; one that cannot be opened is
// left to the caller to report.
ReadFile readFile(CfgFile& file);

// Reads the adapter's settings page. Anything but KT_OK has been said, unless it is KT_ERR_NO_RESOURCE.
KT_U8 readPage(_HBA_Info_Page& page);

// Reads the configuration file: page keeps what the file does not name, raid becomes what it lists. False after an
// error that has been said.
bool readConfiguration(CfgFile& file, KT_U8 mode, _file_sasaddr_place_info_t& places, _HBA_Info_Page& page,
                       CfgRaid& raid);

// The two things that a restore reads before it changes anything: the adapter's settings page and the configuration
// file.
#pragma once

#include <string>

#include "Public/cfg/raidConfig.h"
#include "Public/cfg/reader.h"
#include "Public/wholeFile.h"

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

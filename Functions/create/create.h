#pragma once

#include "Public/optionRows.h"

int doCreate(int argc, char** argv, _cmd_struct* row);

enum { OPT_FORCE_SIZE = OPT_FIRST_OWN };

inline constexpr char create_sh[] = ":Create virtual disk.";
inline constexpr OptionRow createRows[] = {
    {'o', "", "<vd>", Takes::Words, 0, "Object to create: a virtual disk."},
    {'r', "raidmode", "<0|1|10|1e|5|50|6|60|hc|hs|hybrid>", Takes::Words, ONCE | REQUIRED, "RAID level."},
    {'d', "pdid", "<PD id list>", Takes::Disks, ONCE | REQUIRED,
     "IDs of the physical disks to use, separated by commas."},
    {'q', "paritydisks", "<# parity disks>", Takes::Text, ONCE,
     "Number of parity disks; RAID6 and RAID60 only. Default: 2 and 4."},
    {'n', "name", "<name>", Takes::Text, ONCE,
     "Name of the VD: at most 10 letters, digits, blanks or underlines.\n"
     "Default: VD, the RAID level and a number."},
    {'b', "blocksize", "<16|32|64|128>", Takes::Words, ONCE,
     "Stripe block size in KB. Default: 64. Up to 1024 on some adapters."},
    {'c', "cache", "<on|off>", Takes::Words, 0, "Cache mode. Default: on with a battery backup unit, otherwise off."},
    {'w', "writepolicy", "<wt|wb>", Takes::Words, ONCE, "Write policy: write through or write back."},
    {'p', "readpolicy", "<ra|none>", Takes::Words, ONCE, "Read policy: read ahead or none."},
    {'s', "size", "<size>", Takes::Text, ONCE, "Size in MB. Default: all available space."},
    {OPT_FORCE_SIZE, "forcesize", "", Takes::Nothing, 0,
     "Use the size given by -s on adapters that otherwise take all space."},
    {'g', "gbrounding", "<0|1|10>", Takes::Words, 0,
     "Round the size down to a multiple of 1 or 10 GB. Default: 0, no\n"
     "rounding."},
    {'i', "init", "<quick|background|intelligent|none>", Takes::Words, 0, "Initialization mode. Default: quick."},
    {OPT_WAIVE, "waiveconfirmation", "", Takes::Nothing, 0, "Do not ask when a disk has a file system on it."},
    HELP_ROW,
    {'t', "", "<value>", Takes::Text, UNNAMED},
};
inline constexpr CommandWords createWords = {
    .usage = "\n\ncreate -o<vd> -d<PD id list> -r<0|1|10|5|1e>[-n <name>][-b <16|32|64|128>]\n"
             "       [-q <# parity disks>][-c <on|off>][-w <wt|wb>][-p <ra|none>][-s <size>]\n"
             "       [-g <0|1|10>][-i <quick|background|intelligent|none>]\n"
             "       [--forcesize][--waiveconfirmation][-h]\n",
    .rows = createRows,
    .examples = "create -o vd -r0 -d 0,2,4 -n \"My VD\" -b 32 -g 0\n\n"
                "Create a RAID0 virtual disk named \"My VD\" on physical disks 0, 2 and 4 with\n"
                "a stripe block size of 32 KB.\n",
    .scanned = "conrqdbtswpgi"};
inline constexpr const char* create_help = helpOf<createWords>;
inline constexpr const OptionSet& createOptions = optionSet<createWords>;

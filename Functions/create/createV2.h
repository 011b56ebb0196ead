#pragma once

#include "Public/optionRows.h"

int doCreateV2(int argc, char** argv, _cmd_struct* row);

// Options of the array-based create command without a letter.
enum { OPT_SIZE_ONLY = OPT_FIRST_OWN, OPT_CACHE_ON, OPT_CACHE_OFF };

inline constexpr char createV2_sh[] = ":Create virtual disk or array.";
inline constexpr OptionRow createV2Rows[] = {
    {'o', "object", "<vd|array|auto>", Takes::Words, 0,
     "Object to create: a virtual disk in an array (default), an array, or\n"
     "what the adapter chooses by itself."},
    {'a', "arrayid", "<id>", Takes::Array, ONCE, "ID of the array to create the VD in. VD only."},
    {'l', "slot", "<array empty slot>", Takes::Text, 0, "Empty slot of the array. Default: any. VD only."},
    {'r', "raidmode", "<0|1|10|1E|5|50|6|60>", Takes::Words, ONCE, "RAID level. Array only."},
    {'q', "paritydisks", "<# parity disks>", Takes::Text, ONCE,
     "Number of parity disks; RAID6 and RAID60 only. Default: 2 and 4. Array\n"
     "only."},
    {'d', "pdid", "<PD id list>", Takes::Disks, ONCE,
     "IDs of the physical disks to use, separated by commas. Array only."},
    {'n', "name", "<name>", Takes::Text, ONCE, "Name: at most 16 letters, digits, blanks or underlines."},
    {'b', "blocksize", "<16|32|64|128>", Takes::Words, ONCE,
     "Stripe block size in KB. Default: 64, for a VD that of its array. Up to\n"
     "1024 on some adapters."},
    {'s', "size", "<size>", Takes::Text, ONCE, "Size in MB. Default: all available space."},
    {'c', "cachemode", "<on|off|auto>", Takes::Words, 0, "Cache mode. VD only."},
    {'w', "writepolicy", "<wt|wb|auto>", Takes::Words, ONCE,
     "Write policy: write through, write back or automatic. VD only."},
    {'p', "readpolicy", "<ra|none>", Takes::Words, ONCE, "Read policy: read ahead or none. VD only."},
    {'g', "gbrounding", "<0|1|10>", Takes::Words, 0,
     "Round the size down to a multiple of 1 or 10 GB. Default: 0, no\n"
     "rounding. VD only."},
    {'i', "init", "<quick|foreground|background|intelligent|none>", Takes::Words, 0,
     "Initialization mode. Default: quick."},
    {OPT_CACHE_ON, "cacheon", ""},
    {OPT_CACHE_OFF, "cacheoff", "", Takes::Nothing, 0, "Write cache of the array's disks. Default: on. Array only."},
    {OPT_SIZE_ONLY, "sizeonly", "", Takes::Nothing, 0, "Only display the size of the array that can be created."},
    {OPT_WAIVE, "waiveconfirmation", "", Takes::Nothing, 0, "Do not ask when a disk has a file system on it."},
    {'t', "type", "<disable|enable>", Takes::Words, ONCE, "Type of the automatic creation. Default: disable."},
    HELP_ROW,
};
inline constexpr CommandWords createV2Words = {
    .usage = "\n\ncreate -o <vd|array> -a <id> -l <array empty slot> -r <0|1|10|1E|5|50|6|60>\n"
             "       [-q <# parity disks>] -d <PD id list> [-n <name>] [-b <16|32|64|128>]\n"
             "       [-s <size>] [-c <on|off|auto>] [-w <wt|wb|auto>] [-p <ra|none>]\n"
             "       [-g <0|1|10>] [-i <quick|foreground|background|intelligent|none>]\n"
             "       [--cacheon|--cacheoff] [--sizeonly] [--waiveconfirmation] [-h]\n"
             "create   -o <auto> -t<disable|enable>\n",
    .rows = createV2Rows,
    .examples = "create -o array -r 5 -d 0,2,4 -n \"My Array\"\n\n"
                "Create a RAID5 array named \"My Array\" on physical disks 0, 2 and 4.\n\n"
                "create -o vd -a 0 -s 2000\n\n"
                "Create a virtual disk of 2000 MB in array 0.\n",
    .scanned = "coalnrqdbswpgit"};
inline constexpr const char* createV2_help = helpOf<createV2Words>;
inline constexpr const OptionSet& createV2Options = optionSet<createV2Words>;

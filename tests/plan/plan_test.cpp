// Tables of what is there and what is wanted, and the commands that lead from the one to the other.
#include <gtest/gtest.h>

#include "Plan/plan.h"

namespace {
const Json base = Json::parse(R"({
  "id": 0, "model": "T8", "serial": "KS1", "bus": {"device": 18304},
  "levels": ["RAID0", "RAID1", "RAID5", "RAID6", "RAID10"], "stripes": [16, 32, 64, 128],
  "features": ["migration", "only same type hd for create"],
  "advancedFeatures": ["vd write cache", "vd read cache"],
  "limits": {"virtualDisksPerArray": 8, "disksPerArray": 32, "disksPerVirtualDisk": 16, "parity": 3},
  "config": {"RebuildRate": 50, "BGARate": 50, "AutoRebuildOn": 1, "AlarmOn": 255},
  "battery": {"status": 1}})");

constexpr KT_U64 GB = KT_U64{1} << 30;

// A report of adapters that are given by what differs from `base`: "disks" as in labs, but with sizes in GiB, arrays
// with "used" and "free" GiB.
Json reportOf(const std::string& text) {
    Json report = {{"report", 1}, {"unread", Json::array()}, {"adapters", Json::array()}};
    for (const Json& one : Json::parse(text)) {
        Json adapter = base;
        adapter["id"] = report["adapters"].size();
        for (const auto& item : one.items())
            adapter[item.key()] = item.value();
        Json disks = Json::array();
        for (const Json& entry : adapter["disks"]) {
            for (unsigned copy = 0; copy < entry.value("count", 1U); ++copy) {
                Json disk = {{"id", disks.size()}, {"type", "SATA"},       {"sector", 512},
                             {"enclosure", 1},     {"slot", disks.size()}, {"state", "healthy"}};
                for (const auto& item : entry.items())
                    disk[item.key()] = item.value();
                disk["serial"] = entry.value("serial", "S" + std::to_string(disks.size()));
                disk["size"] = entry.value("size", 1000U) * GB;
                disks.push_back(disk);
            }
        }
        for (const char* list : {"arrays", "virtualDisks"}) {
            for (const Json& owner : adapter.value(list, Json::array())) {
                for (const Json& disk : owner["disks"]) {
                    if (!disk.is_null()) disks[disk.get<size_t>()]["member"] = true;
                }
            }
        }
        adapter["disks"] = disks;
        report["adapters"].push_back(adapter);
    }
    return report;
}

struct Case {
    const char* name;
    const char* there;  // adapters
    const char* wanted; // adapters
    const char* lines;  // what comes of it
    bool mayDelete = false;
};

// Commands without "ktsetup", "waits: " in front of those that wait; else the reasons, or what cannot be reached.
std::string linesOf(const Plan& plan) {
    std::string lines;
    for (const Reason& reason : plan.reasons)
        lines += reason.place + ": " + reason.text + "\n";
    for (const Unreachable& one : plan.unreachable)
        lines += "unreachable " + one.place + ": " + one.text + " / " + one.nearest + "\n";
    for (const PlannedStep& step : plan.steps)
        lines += (step.waits ? "waits: " : "") + commandText(step).substr(sizeof "ktsetup") + "\n";
    return lines;
}

// The commands with why they are there and what they cost.
std::string toldOf(const Plan& plan) {
    std::string lines;
    for (const PlannedStep& step : plan.steps)
        lines += commandText(step).substr(sizeof "ktsetup") + ": " + step.reason + ": " + step.cost + "\n";
    return lines;
}

class Planning : public testing::TestWithParam<Case> {};

TEST_P(Planning, leadsThere) {
    const Case& given = GetParam();
    const Wanted wanted = wantedIn({{"adapters", Json::parse(given.wanted)}});
    const Plan plan = makePlan(reportOf(given.there), wanted, {given.mayDelete, -1});
    EXPECT_EQ(linesOf(plan), given.lines);
}

class Telling : public testing::TestWithParam<Case> {};

TEST_P(Telling, saysWhyAndWhatItCosts) {
    const Case& given = GetParam();
    const Wanted wanted = wantedIn({{"adapters", Json::parse(given.wanted)}});
    EXPECT_EQ(toldOf(makePlan(reportOf(given.there), wanted, {given.mayDelete, -1})), given.lines);
}

// Arrays that stand in several of the cases; "slots" are in bytes: 1000 GiB a disk.
#define DEMO_VD                                                                                                        \
    R"({"id": 0, "name": "data", "status": "online", "level": "RAID5", "disks": [0, 1, 2], "stripe": 64,)"             \
    R"( "size": 107374182400, "cache": "on", "readAhead": false})"
#define DEMO                                                                                                           \
    R"({"id": 0, "name": "demo", "level": "RAID5", "disks": [0, 1, 2], "stripe": 64, "memberSize": 1073741824000,)"    \
    R"( "writeCache": true, "slots": [{"slot": 0, "size": 107374182400, "virtualDisk": 0},)"                           \
    R"( {"slot": 1, "size": 2040109465600}], "virtualDisks": [)" DEMO_VD "]}"
#define FULL                                                                                                           \
    R"([{"type": "array-based", "disks": [{"count": 8}], "arrays": [{"id": 0, "name": "demo", "level": "RAID5",)"      \
    R"( "disks": [0, 1, 2], "stripe": 64, "memberSize": 53687091200, "slots":)"                                        \
    R"( [{"slot": 0, "size": 107374182400, "virtualDisk": 0}], "virtualDisks": [)" DEMO_VD "]}]}]"
#define THERE R"([{"type": "array-based", "disks": [{"count": 8}], "arrays": [)" DEMO "]}]"
#define BLANK R"([{"type": "array-based", "disks": [{"count": 8}]}])"
#define BLANK_LD R"([{"type": "LD-based", "disks": [{"count": 6}]}])"

const Case creations[] = {
    {"nothing is asked, nothing is done", THERE, R"([{}])", ""},
    {"an array with virtual disks and spares", BLANK,
     R"([{"arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2], "spares": [3], "virtualDisks":
         [{"name": "data", "size": "100GiB"}, {"name": "rest", "cache": "auto", "readAhead": true}]}],
         "disks": [{"count": 4}, {"spare": "global"}]}])",
     "0 create -o array -r 5 -d 0,1,2 -n demo\n"
     "0 create -o vd -a 0 -n data -s 102400\n"
     "0 create -o vd -a 0 -n rest -c auto -p ra\n"
     "0 assign -o array -d 3 -a 0\n"
     "0 assign -d 4\n"},
    {"names with blanks are quoted, sizes cut to megabytes, options passed on", BLANK,
     R"([{"arrays": [{"name": "my array", "level": "RAID6", "parity": 3, "stripe": 128, "writeCache": false,
         "disks": [0, 1, 2, 3, 4, 5], "virtualDisks": [{"name": "a b", "size": 200000000, "cache": "off"}]}]}])",
     "0 create -o array -r 6 -d 0,1,2,3,4,5 -q 3 -b 128 -n \"my array\" --cacheoff\n"
     "0 create -o vd -a 0 -n \"a b\" -s 190 -c off\n"},
    {"two parity disks of three go with LD-based adapters", R"([{"type": "LD-based", "disks": [{"count": 4}]}])",
     R"([{"virtualDisks": [{"name": "a", "level": "RAID6", "parity": 2, "disks": [0, 1, 2]}]}])",
     "0 create -o vd -r 6 -d 0,1,2 -q 2 -n a\n"},
    {"what was made is left as it is", THERE,
     R"([{"arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2], "virtualDisks":
         [{"name": "data", "size": "100GiB", "cache": "on"}]}]}])",
     ""},
    {"what has no name is numbered", BLANK,
     R"([{"arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1], "virtualDisks": [{"size": "100GiB"}, {}]}]}])",
     "0 create -o array -r 1 -d 0,1 -n a\n"
     "0 create -o vd -a 0 -n VD_0 -s 102400\n"
     "0 create -o vd -a 0 -n VD_1\n"},
    {"every setting has its option",
     R"([{"type": "array-based", "disks": [{"count": 2}], "config": {"BGARate": 1, "SyncRate": 1, "InitRate": 1, "RebuildRate": 1,
          "MigrationRate": 1, "CopybackRate": 1, "MPRate": 1, "AutoRebuildOn": 0, "CopyBackOn": 0, "PollSMARTStatus": 0,
          "CpuEfficiencyOn": 0, "ModuleConsolidation": 0, "AlarmOn": 0}}])",
     R"([{"config": {"BGARate": 2, "SyncRate": 3, "InitRate": 4, "RebuildRate": 5, "MigrationRate": 6, "CopybackRate": 7, "MPRate": 100,
          "AutoRebuildOn": 1, "CopyBackOn": 1, "PollSMARTStatus": 1, "CpuEfficiencyOn": 1, "ModuleConsolidation": 1, "AlarmOn": 1}}])",
     "0 set -o hba --bgarate 2 --syncrate 3 --initrate 4 --rebuildrate 5 --migrationrate 6 --copybackrate 7 --mprate "
     "100 --autorebuild on --copyback on --pollsmart on --efficiency on --consolidation on --alarm on\n"},
    {"settings in one command", THERE, R"([{"config": {"RebuildRate": 80, "AutoRebuildOn": 0, "BGARate": 50}}])",
     "0 set -o hba --rebuildrate 80 --autorebuild off\n"},
    {"caches and read-ahead", THERE,
     R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2], "writeCache": false,
         "virtualDisks": [{"name": "data", "cache": "off", "readAhead": true}]}]}])",
     "0 set -o array -i 0 -c off\n"
     "0 set -o vd -i 0 -c off -p ra\n"},
    {"an array keeps its disks under another name", THERE, R"([{"arrays": [{"name": "other", "disks": [2, 1, 0]}]}])",
     "0 set -o array -i 0 -n other\n"},
    {"outside arrays a size is forced, and auto comes behind", BLANK_LD,
     R"([{"virtualDisks": [{"name": "data", "level": "RAID10", "disks": [0, 1, 2, 3], "size": "100GiB", "cache": "auto"},
         {"name": "rest", "level": "RAID1", "disks": [4, 5]}]}])",
     "0 create -o vd -r 10 -d 0,1,2,3 -n data -s 102400 --forcesize -c off\n"
     "0 set -o vd -i 0 -c auto\n"
     "0 create -o vd -r 1 -d 4,5 -n rest\n"},
    {"first-generation adapters share disks among virtual disks",
     R"([{"type": "LD-based", "bus": {"device": 18000}, "disks": [{"count": 2}]}])",
     R"([{"virtualDisks": [{"name": "a", "level": "RAID1", "disks": [0, 1], "size": "400GiB"},
         {"name": "b", "level": "RAID1", "disks": [0, 1], "size": "300GiB"}]}])",
     "0 create -o vd -r 1 -d 0,1 -n a -s 409600\n"
     "0 create -o vd -r 1 -d 0,1 -n b -s 307200\n"},
    {"file systems are overwritten with leave only",
     R"([{"type": "array-based", "disks": [{"count": 2, "mbr": true}]}])",
     R"([{"arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1]}]}])",
     "0 create -o array -r 1 -d 0,1 -n a --waiveconfirmation\n", true},
};

const Case choices[] = {
    {"disks by what they are: the smallest that fit, all alike",
     R"([{"type": "array-based", "disks": [{"count": 2, "size": 4000}, {"count": 2, "size": 3000},
          {"type": "SAS", "size": 2000}, {"count": 2, "size": 2000}]}])",
     R"([{"disks": [{"count": 3, "size": "2TiB"}], "arrays": [{"name": "a", "disks": [0, 1, 2]}]}])",
     "0 create -o array -r 5 -d 2,3,0 -n a\n"},
    {"by serial number, by bay, by id", R"([{"type": "array-based", "disks": [{"count": 8}]}])",
     R"([{"disks": [{"serial": "S5"}, {"enclosure": 1, "slot": 3}, {"id": 7}],
          "arrays": [{"name": "a", "disks": [0, 1, 7]}]}])",
     "0 create -o array -r 5 -d 5,3,7 -n a\n"},
    {"the most demanding array chooses first",
     R"([{"type": "array-based", "disks": [{"count": 2, "size": 4000}, {"count": 2, "size": 2000}]}])",
     R"([{"disks": [{"count": 2}, {"count": 2, "size": "4000GiB"}],
          "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1]}, {"name": "b", "level": "RAID1", "disks": [2, 3]}]}])",
     "0 create -o array -r 1 -d 2,3 -n a\n"
     "0 create -o array -r 1 -d 0,1 -n b\n"},
    {"no disk with the system, a file system or a duty is chosen",
     R"([{"type": "array-based", "disks": [{"os": true}, {"mbr": true}, {"spare": "global"}, {"state": "foreign"},
          {"state": "offline"}, {"count": 2}]}])",
     R"([{"disks": [{"count": 2}], "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1]}]}])",
     "0 create -o array -r 1 -d 5,6 -n a\n"},
    {"members by description are those that there are, in whatever slot", THERE,
     R"([{"disks": [{"count": 3}, {"spare": "global"}], "arrays": [{"name": "demo", "disks": [0, 1, 2]}]}])",
     "0 assign -d 3\n"},
    {"the disk in the bay stands in for one that is gone", BLANK,
     R"([{"disks": [{"serial": "gone", "enclosure": 1, "slot": 6}, {"serial": "S1", "enclosure": 1, "slot": 0}],
          "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1]}]}])",
     "0 create -o array -r 1 -d 6,1 -n a\n"},
    {"adapters by serial number",
     R"([{"type": "LD-based", "disks": []}, {"type": "array-based", "serial": "KS2", "disks": [{"count": 2}]}])",
     R"([{"serial": "KS2", "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1]}]}])",
     "1 create -o array -r 1 -d 0,1 -n a\n"},
};

// A demo array that lacks its second disk.
#define DEGRADED                                                                                                       \
    R"([{"type": "array-based", "disks": [{"count": 8}], "arrays": [{"id": 0, "name": "demo", "level": "RAID5",)"      \
    R"( "disks": [0, null, 2], "stripe": 64, "memberSize": 1073741824000, "slots": [{"slot": 0, "size": 100000000000}]}]}])"

const Case changes[] = {
    {"so is a failed one, and what is created waits for that",
     R"([{"type": "array-based", "disks": [{"count": 2}, {"state": "offline"}, {"count": 2}], "arrays": [{"id": 0,
          "name": "demo", "level": "RAID5", "disks": [0, 1, 2], "stripe": 64, "memberSize": 1073741824000,
          "slots": [{"slot": 0, "size": 2147483648000}]}]}])",
     R"([{"disks": [{"count": 3}], "arrays": [{"name": "demo", "disks": [0, 1, 2], "virtualDisks": [{"name": "v"}]}]}])",
     "0 rebuild -l 0 -d 3\n"
     "waits: 0 create -o vd -a 0 -n v\n"},
    {"a missing disk is rebuilt", DEGRADED,
     R"([{"disks": [{"count": 3}], "arrays": [{"name": "demo", "disks": [0, 1, 2]}]}])", "0 rebuild -l 0 -d 1\n"},
    {"and two of them in their order",
     R"([{"type": "array-based", "disks": [{"count": 4}], "arrays": [{"id": 0, "name": "demo", "level": "RAID6",
          "disks": [0, null, null, 3], "stripe": 64, "memberSize": 1073741824000, "slots": []}]}])",
     R"([{"arrays": [{"name": "demo", "level": "RAID6", "disks": [0, 1, 2, 3]}]}])", "0 rebuild -l 0 -d 1,2\n"},
    {"growth onto more disks, and a virtual disk in what it brings", THERE,
     R"([{"arrays": [{"name": "demo", "level": "RAID5", "disks": [0, 1, 2, 4],
          "virtualDisks": [{"name": "data"}, {"name": "more", "size": "2500GiB"}]}]}])",
     "0 migrate -l 0 -r 5 -d 0,1,2,4\n"
     "waits: 0 create -o vd -a 0 -n more -s 2560000\n"},
    {"a higher level", THERE, R"([{"arrays": [{"name": "demo", "level": "RAID6", "disks": [0, 1, 2, 3]}]}])",
     "0 migrate -l 0 -r 6 -d 0,1,2,3\n"},
    {"never to less redundancy", THERE, R"([{"arrays": [{"name": "demo", "level": "RAID10", "disks": [0, 1, 2, 3]}]}])",
     "unreachable adapters[0].arrays[0].level: array 0 \"demo\" is RAID5; a migration to RAID10 would lead to less "
     "redundancy, which none does / leave it at RAID5 on disks 0,1,2; --delete deletes what is there, with its data\n"},
    {"nor away from a disk", THERE, R"([{"arrays": [{"name": "demo", "disks": [0, 1, 4]}]}])",
     "unreachable adapters[0].arrays[0].disks: array 0 \"demo\" is also on disk 2; a migration takes no disk away, and "
     "only "
     "a failure makes room for another one / leave disk 2 among its disks; --delete deletes what is there, with its "
     "data\n"},
    {"with leave it is made anew", THERE,
     R"([{"arrays": [{"name": "demo", "level": "RAID10", "disks": [0, 1, 2, 3], "virtualDisks": [{"name": "data"}]}]}])",
     "0 delete -o vd -i 0 --waiveconfirmation\n"
     "0 delete -o array -i 0 --waiveconfirmation\n"
     "0 create -o array -r 10 -d 0,1,2,3 -n demo\n"
     "0 create -o vd -a 0 -n data\n",
     true},
    {"smaller only anew", THERE,
     R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2], "virtualDisks": [{"name": "data", "size": "50GiB"}]}]}])",
     "0 delete -o vd -i 0 --waiveconfirmation\n"
     "0 create -o vd -a 0 -n data -s 51200\n",
     true},
    {"and not without leave", THERE,
     R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2], "virtualDisks": [{"name": "data", "size": "50GiB"}]}]}])",
     "unreachable adapters[0].arrays[0].virtualDisks[0].size: virtual disk 0 \"data\" has 102400 MiB, and nothing "
     "makes one "
     "smaller; 51200 MiB are wanted / 102400 MiB; --delete deletes what is there, with its data\n"},
    {"a virtual disk with room behind it stays as large as it is", THERE,
     R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2, 3], "virtualDisks": [{"name": "data", "size": "100GiB"},
          {"name": "more", "size": "2890GiB"}]}]}])",
     "0 migrate -l 0 -r 5 -d 0,1,2,3\n"
     "waits: 0 create -o vd -a 0 -n more -s 2959360\n"},
    {"a migration that would make a virtual disk larger than wanted", FULL,
     R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2, 3], "virtualDisks": [{"name": "data", "size": "100GiB"}]}]}])",
     "unreachable adapters[0].arrays[0].virtualDisks[0].size: virtual disk 0 \"data\" would have 153600 MiB, to which "
     "the "
     "migration of its disks brings it; 102400 MiB are wanted / 153600 MiB; --delete deletes what is there, with its "
     "data\n"},
    {"what no migration does",
     R"([{"type": "array-based", "disks": [{"count": 12}], "arrays": [
          {"id": 0, "name": "a", "level": "RAID5", "disks": [0, 1, null], "stripe": 64, "slots": [{"slot": 0, "size": 2, "virtualDisk": 0}],
           "virtualDisks": [{"id": 0, "name": "v", "status": "offline"}]},
          {"id": 1, "name": "b", "level": "RAID5", "disks": [3, 4, 5], "stripe": 64, "slots": []},
          {"id": 2, "name": "c", "level": "RAID0", "disks": [6, 7], "stripe": 64, "slots": [{"slot": 0, "size": 2, "virtualDisk": 1}],
           "virtualDisks": [{"id": 1, "name": "w", "size": 1000000000}]}]}])",
     R"([{"arrays": [{"name": "a", "disks": [0, 1, 2]}, {"name": "b", "level": "RAID6", "disks": [3, 4, 5, 8]},
          {"name": "c", "level": "RAID0", "disks": [6, 7], "stripe": 128}]}])",
     "unreachable adapters[0].arrays[0].disks: array 0 \"a\" is offline, and no command brings its data back / bring "
     "back the disks that it has lost; --delete deletes what is there, with its data\n"
     "unreachable adapters[0].arrays[1].level: array 1 \"b\" is empty, and only an array with a virtual disk in it "
     "migrates / leave it at RAID5 on disks 3,4,5; --delete deletes what is there, with its data\n"
     "unreachable adapters[0].arrays[2].stripe: array 2 \"c\" has stripes of 64 KiB, which stay as they were created / "
     "64; --delete deletes what is there, with its data\n"},
    {"nor an adapter that cannot",
     R"([{"type": "array-based", "features": [], "disks": [{"count": 8}], "arrays": [)" DEMO "]}]",
     R"([{"arrays": [{"name": "demo", "level": "RAID6", "disks": [0, 1, 2, 3]}]}])",
     "unreachable adapters[0].arrays[0].level: adapter 0 (T8, serial KS1) does not migrate, and array 0 \"demo\" is "
     "RAID5 on disks 0,1,2 / leave it at RAID5 on disks 0,1,2; --delete deletes what is there, with its data\n"},
    {"disks that others need",
     R"([{"type": "array-based", "disks": [{"state": "foreign"}, {"spare": "global", "spareInUse": true}, {"mbr": true}, {"count": 1}]}])",
     R"([{"arrays": [{"name": "a", "level": "RAID0", "disks": [0, 1, 2, 3]}]}])",
     "unreachable adapters[0].arrays[0].disks: disk 0 (serial S0) is foreign: it holds data of another adapter / "
     "import it, or wipe it, first\n"
     "unreachable adapters[0].arrays[0].disks: disk 1 (serial S1) is a spare at work / wait for the copy back, or name "
     "another\n"
     "unreachable adapters[0].arrays[0].disks: disk 2 (serial S2) has a file system on it / name another disk, or let "
     "--delete overwrite it\n"},
    {"room that something else takes", THERE,
     R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2], "virtualDisks": [{"name": "new", "size": "1950GiB"}]}]}])",
     "unreachable adapters[0].arrays[0].virtualDisks[0]: does not fit into array 0 \"demo\", where 1945600 MiB are "
     "free in one piece; virtual disk 0 \"data\" is there, which the file does not mention / a smaller size; --delete "
     "deletes what is there, with its data\n"},
    {"one migration after the other",
     R"([{"type": "LD-based", "disks": [{"count": 6}], "virtualDisks": [
          {"id": 0, "name": "a", "level": "RAID1", "disks": [0, 1], "stripe": 64, "size": 107374182400},
          {"id": 1, "name": "b", "level": "RAID1", "disks": [3, 4], "stripe": 64, "size": 107374182400}]}])",
     R"([{"virtualDisks": [{"name": "a", "disks": [0, 1, 2]}, {"name": "b", "disks": [3, 4, 5]}]}])",
     "0 migrate -l 0 -r 5 -d 0,1,2\n"
     "waits: 0 migrate -l 1 -r 5 -d 3,4,5\n"},
    {"what is in the way is named", THERE, R"([{"arrays": [{"name": "new", "level": "RAID1", "disks": [2, 3]}]}])",
     "unreachable adapters[0].arrays[0].disks: disk 2 (serial S2) is in use by array 0 \"demo\", which the file does "
     "not "
     "mention / name another disk; --delete deletes what is there, with its data\n"},
    {"and goes with leave", THERE, R"([{"arrays": [{"name": "new", "level": "RAID1", "disks": [2, 3]}]}])",
     "0 delete -o vd -i 0 --waiveconfirmation\n"
     "0 delete -o array -i 0 --waiveconfirmation\n"
     "0 create -o array -r 1 -d 2,3 -n new\n",
     true},
    {"a spare is taken with leave", R"([{"type": "array-based", "disks": [{"count": 2}, {"spare": "global"}]}])",
     R"([{"arrays": [{"name": "a", "disks": [0, 1, 2]}]}])",
     "0 delete -o spare -i 2 --waiveconfirmation\n"
     "0 create -o array -r 5 -d 0,1,2 -n a\n",
     true},
    {"a spare too small for what is created comes first",
     R"([{"type": "array-based", "disks": [{"count": 2}, {"size": 500}]}])",
     R"([{"disks": [{"id": 0}, {"id": 1}, {"id": 2, "spare": "global"}],
          "config": {"BGARate": 60}, "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1]}]}])",
     "0 set -o hba --bgarate 60\n"
     "0 assign -d 2\n"
     "0 create -o array -r 1 -d 0,1 -n a\n"},
    {"spares that no adapter would take",
     R"([{"type": "array-based", "disks": [{"count": 3}, {"size": 500}, {"size": 500}, {"type": "SAS"}], "arrays": [)" DEMO
     R"(]}])",
     R"([{"disks": [{"id": 0}, {"id": 1}, {"id": 2}, {"id": 3, "spare": "global"}, {"id": 4}, {"id": 5}],
          "arrays": [{"name": "demo", "disks": [0, 1, 2], "spares": [4, 5]}]}])",
     "unreachable adapters[0].arrays[0].spares: disk 4 (serial S4) is smaller than the disks of array 0 \"demo\" / a "
     "disk of at least 1.1 TB\n"
     "unreachable adapters[0].arrays[0].spares: disk 5 (serial S5) is of another kind than the disks of array 0 "
     "\"demo\" / a disk like disk 0\n"},
    {"nor one beside what stays",
     R"([{"type": "array-based", "disks": [{"count": 3}, {"size": 500}], "arrays": [)" DEMO "]}]",
     R"([{"disks": [{"id": 3, "spare": "global"}]}])",
     "unreachable adapters[0].disks: disk 3 (serial S3) is too small to stand by for anything on adapter 0 (T8, serial "
     "KS1), which takes no such spare / a disk of at least 1.1 TB\n"},
    {"but one of another kind is",
     R"([{"type": "array-based", "disks": [{"count": 3}, {"type": "SAS"}], "arrays": [)" DEMO "]}]",
     R"([{"disks": [{"id": 3, "spare": "global"}]}])", "0 assign -d 3\n"},
    {"an array's own spare waits until its level has a use for it",
     R"([{"type": "array-based", "disks": [{"count": 5}], "arrays": [{"id": 0, "name": "a", "level": "RAID0",
          "disks": [0, 1], "memberSize": 1073741824000, "slots": [{"slot": 0, "size": 2147483648000, "virtualDisk": 0}],
          "virtualDisks": [{"id": 0, "name": "v", "size": 2147483648000}]}]}])",
     R"([{"arrays": [{"name": "a", "level": "RAID5", "disks": [0, 1, 2], "spares": [3]}]}])",
     "0 migrate -l 0 -r 5 -d 0,1,2\n"
     "waits: 0 assign -o array -d 3 -a 0\n"},
    {"the system is never deleted",
     R"([{"type": "LD-based", "disks": [{"count": 4}], "virtualDisks": [{"id": 0, "name": "sys", "level": "RAID6",
          "disks": [0, 1, 2, 3], "stripe": 64, "size": 107374182400, "os": true}]}])",
     R"([{"virtualDisks": [{"name": "sys", "level": "RAID5", "disks": [0, 1, 2, 3]}]}])",
     "unreachable adapters[0].virtualDisks[0].level: virtual disk 0 \"sys\" is RAID6; a migration to RAID5 would lead "
     "to "
     "less redundancy, which none does; the system runs from it / leave it at RAID6 with 0 parity disks on disks "
     "0,1,2,3\n",
     true},
};

const Case mistakes[] = {
    {"all at once, with places", BLANK,
     R"([{"arrays": [{"name": "a", "level": "RAID5", "disks": [0, 1]}, {"name": "a", "disks": [1, 2, 30], "colour": 1},
          {"name": "c", "level": "RAID0", "disks": [5, 6], "spares": [7], "virtualDisks": [{"size": "much"}]}]}])",
     "adapters[0].arrays[0].disks: RAID5 needs at least 3 PDs\n"
     "adapters[0].arrays[1].colour: is no word of labs or reports here\n"
     "adapters[0].arrays[2].spares: RAID0 has no use for a spare\n"
     "adapters[0].arrays[2].virtualDisks[0].size: should be a number of bytes, or an amount such as \"500GB\" or "
     "\"64MiB\"\n"
     "adapters[0].arrays[1].name: \"a\" is the name of another array (adapters[0].arrays[0]); names decide what is the "
     "same thing\n"
     "adapters[0].arrays[1].disks: disk 1 is taken by adapters[0].arrays[0].disks already\n"},
    {"disks that nothing may be made of",
     R"([{"type": "array-based", "disks": [{"state": "offline"}, {"os": true}, {"type": "ATAPI"}, {"count": 3}], "arrays": [
          {"id": 0, "name": "kept", "level": "RAID1", "disks": [3, 4], "slots": []}]}])",
     R"([{"arrays": [{"name": "a", "level": "RAID0", "disks": [0, 1, 2, 3]}, {"name": "kept", "level": "RAID1", "disks": [4, 5]}]}])",
     "adapters[0].arrays[0].disks: disk 0 (serial S0) is offline; replace it\n"
     "adapters[0].arrays[0].disks: the system runs from disk 1 (serial S1)\n"
     "adapters[0].arrays[0].disks: disk 2 (serial S2) holds no data: it is an ATAPI drive\n"},
    {"disks of another virtual disk that stays",
     R"([{"type": "LD-based", "disks": [{"count": 3}], "virtualDisks": [{"id": 0, "name": "v", "level": "RAID1",
          "disks": [0, 1], "stripe": 64, "size": 1000000000}]}])",
     R"([{"virtualDisks": [{"name": "v", "level": "RAID1", "disks": [0, 1]},
          {"name": "w", "level": "RAID1", "disks": [1, 2]}]}])",
     "adapters[0].virtualDisks[1].disks: disk 1 (serial S1) is one of the disks of virtual disk 0 \"v\", which the "
     "file keeps there\n"},
    {"words that are not what they should be", BLANK,
     R"([{"serial": 1, "id": "one", "config": {"RebuildRate": 101, "AlarmOn": 2}, "disks": [{"size": -1}, {"type": "TAPE"},
          {"serial": "x", "count": 2}, {"id": 0}, {"id": 65534, "count": 2}], "virtualDisks": 7,
          "arrays": [1, {"name": "a", "disks": 5}, {"name": "b", "disks": [1, null]}, {"name": "c", "disks": [1, -1]},
          {"name": "d", "level": "RAID1", "disks": [1, 1], "parity": 2, "writeCache": 1, "virtualDisks": [
          {"name": "v", "size": "99MiB", "cache": "maybe"}, {"name": "v"}]}, {"name": "e", "level": "HYBRID", "disks": [7, 8]}]}])",
     "adapters[0].serial: should be a text\n"
     "adapters[0].id: should be a whole number\n"
     "adapters[0].config.RebuildRate: should be 0 to 100\n"
     "adapters[0].config.AlarmOn: should be 0 or 1\n"
     "adapters[0].disks[0].size: should be a number of bytes, or an amount such as \"500GB\" or \"64MiB\"\n"
     "adapters[0].disks[1].type: \"TAPE\" should be one of: SATA, SAS, SATA SSD, SAS SSD, PATA, ATAPI\n"
     "adapters[0].disks[2].serial: is that of one disk; \"count\" asks for more\n"
     "adapters[0].disks[3].id: 0 is another disk's already\n"
     "adapters[0].disks[4].count: goes beyond the last disk number\n"
     "adapters[0].arrays[0]: should be an object\n"
     "adapters[0].arrays[1].disks: should be a list of disks\n"
     "adapters[0].arrays[1].disks: are not named\n"
     "adapters[0].arrays[2].disks: names a missing disk; what is wanted has all of its disks\n"
     "adapters[0].arrays[2].disks: RAID5 needs at least 3 PDs\n"
     "adapters[0].arrays[3].disks: should be a list of disks by their numbers\n"
     "adapters[0].arrays[3].disks: RAID5 needs at least 3 PDs\n"
     "adapters[0].arrays[4].disks: name disk 1 twice\n"
     "adapters[0].arrays[4].parity: RAID1 has no parity disks to choose\n"
     "adapters[0].arrays[4].writeCache: should be true or false\n"
     "adapters[0].arrays[4].virtualDisks[0].cache: \"maybe\" should be one of: on, off, auto\n"
     "adapters[0].arrays[4].virtualDisks[0].size: is less than 100 MiB, the least that can be created\n"
     "adapters[0].arrays[4].virtualDisks[1].name: \"v\" is the name of another one in this array "
     "(adapters[0].arrays[4].virtualDisks[0]); names decide what is the same thing\n"
     "adapters[0].arrays[5].level: nothing makes HYBRID in an array\n"
     "adapters[0].virtualDisks: should be a list of objects\n"
     "adapters[0].arrays[3].disks: disk 1 is taken by adapters[0].arrays[2].disks already\n"
     "adapters[0].arrays[4].disks: disk 1 is taken by adapters[0].arrays[2].disks already\n"
     "adapters[0].arrays[4].disks: disk 1 is taken by adapters[0].arrays[2].disks already\n"
     "adapters[0].arrays[5].disks: disk 7 is not among the disks of this file\n"
     "adapters[0].arrays[5].disks: disk 8 is not among the disks of this file\n"},
    {"what only befalls virtual disks", BLANK,
     R"([{"arrays": [{"name": "a", "disks": [0, 1, 2], "virtualDisks": [{"status": "deleted"}, {"status": "foreign"},
          {"status": "importable"}, {"status": "not importable"}, {"status": "conflicted"}, {"status": "plugin conflicted"}]}]}])",
     "adapters[0].arrays[0].virtualDisks[0].status: nothing makes a virtual disk deleted\n"
     "adapters[0].arrays[0].virtualDisks[1].status: nothing makes a virtual disk foreign\n"
     "adapters[0].arrays[0].virtualDisks[2].status: nothing makes a virtual disk importable\n"
     "adapters[0].arrays[0].virtualDisks[3].status: nothing makes a virtual disk not importable\n"
     "adapters[0].arrays[0].virtualDisks[4].status: nothing makes a virtual disk conflicted\n"
     "adapters[0].arrays[0].virtualDisks[5].status: nothing makes a virtual disk plugin conflicted\n"},
    {"disks that are not there, or not what is said", BLANK,
     R"([{"disks": [{"serial": "none"}, {"enclosure": 1, "slot": 20}, {"id": 2, "type": "SAS"}, {"count": 1}],
          "arrays": [{"name": "a", "disks": [0, 1, 2, 3]}]}])",
     "adapters[0].disks[0].serial: there is no disk with serial number none on adapter 0 (T8, serial KS1)\n"
     "adapters[0].disks[1]: there is no disk in slot 20 of enclosure 1 on adapter 0 (T8, serial KS1)\n"
     "adapters[0].disks[2]: disk 2 (serial S2) is SATA of 1.1 TB; wanted is a SAS disk\n"},
    {"more than there is", BLANK,
     R"([{"disks": [{"count": 9}], "arrays": [{"name": "a", "disks": [0, 1, 2, 3, 4, 5, 6, 7, 8]}]}])",
     "adapters[0].arrays[0].disks: a disk is wanted 9 times, and only 8 that fit are free on adapter 0 (T8, serial "
     "KS1)\n"},
    {"more than fits", BLANK,
     R"([{"arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1], "virtualDisks": [{"name": "v", "size": "2000GiB"}]}]}])",
     "adapters[0].arrays[0].virtualDisks[0]: does not fit into array \"a\", where 1024000 MiB are free in one piece\n"},
    {"a name that cannot be typed, a level that the adapter lacks", BLANK,
     R"([{"arrays": [{"name": "a;b", "level": "RAID1", "disks": [0, 1]}, {"name": "b", "level": "RAID1E", "disks": [2, 3, 4]}]}])",
     "adapters[0].arrays[0].name: \"a;b\" cannot be given to anything; a name is at most 16 letters, digits, blanks or "
     "underlines\n"
     "adapters[0].arrays[1].level: adapter 0 (T8, serial KS1) has no RAID1E\n"},
    {"a setting that the adapter does not have", BLANK, R"([{"config": {"AlarmOn": 1}}])",
     "unreachable adapters[0].config.AlarmOn: adapter 0 (T8, serial KS1) does not have this setting / leave it out\n"},
    {"an adapter that is not there, or another kind", BLANK, R"([{"type": "LD-based"}, {}])",
     "adapters[0].type: adapter 0 (T8, serial KS1) is array-based\n"
     "adapters[1]: there is no adapter 1\n"},
};

INSTANTIATE_TEST_SUITE_P(Creations, Planning, testing::ValuesIn(creations));
INSTANTIATE_TEST_SUITE_P(Choices, Planning, testing::ValuesIn(choices));
INSTANTIATE_TEST_SUITE_P(Changes, Planning, testing::ValuesIn(changes));
const Case told[] = {
    {"settings", R"([{"type": "array-based", "battery": false, "disks": [{"count": 8}], "arrays": [)" DEMO "]}]",
     R"([{"config": {"RebuildRate": 80, "AutoRebuildOn": 0}, "arrays": [{"name": "other", "disks": [0, 1, 2], "writeCache": false,
          "virtualDisks": [{"name": "data", "cache": "auto", "readAhead": true}]}]}])",
     "0 set -o hba --rebuildrate 80 --autorebuild off: RebuildRate is 50 %, AutoRebuildOn is on: at once\n"
     "0 set -o array -i 0 -n other -c off: array 0 \"demo\" has another name, and has the write cache of its disks on: "
     "at once\n"
     "0 set -o vd -i 0 -c auto -p ra: virtual disk \"data\": its cache is on, it does not read ahead: at once\n"},
    {"caches that no battery keeps",
     R"([{"type": "array-based", "battery": false, "disks": [{"count": 2}], "arrays": [{"id": 0, "name": "demo", "level": "RAID1",
          "disks": [0, 1], "memberSize": 1073741824000, "writeCache": false, "slots": [{"slot": 0, "size": 1073741824000,
          "virtualDisk": 0}], "virtualDisks": [{"id": 0, "name": "data", "size": 1073741824000, "readAhead": true}]}]}])",
     R"([{"arrays": [{"name": "demo", "level": "RAID1", "disks": [0, 1], "writeCache": true,
          "virtualDisks": [{"name": "data", "cache": "on", "readAhead": false}]}]}])",
     "0 set -o array -i 0 -c on --waiveconfirmation: array 0 \"demo\" has the write cache of its disks off: at once; "
     "no battery keeps what the disks' own caches hold when the power fails\n"
     "0 set -o vd -i 0 -c on -p none --waiveconfirmation: virtual disk \"data\": its cache is of no known mode, it "
     "reads ahead: at once; no battery keeps what is in the write cache when the power fails\n"},
    {"what overwrites and what is released",
     R"([{"type": "array-based", "disks": [{"count": 2, "mbr": true}, {"spare": "global"}, {"mbr": true}], "arrays": []}])",
     R"([{"disks": [{"id": 0}, {"id": 1}, {"id": 2}, {"id": 3, "spare": "global"}],
          "arrays": [{"name": "a", "level": "RAID1", "disks": [0, 1], "spares": [2]}]}])",
     "0 delete -o spare -i 2 --waiveconfirmation: disk 2 (serial S2) is a spare, and wanted elsewhere: at once; it "
     "stands by for nothing until then\n"
     "0 create -o array -r 1 -d 0,1 -n a --waiveconfirmation: array \"a\" is not there: at once; the file systems on "
     "the disks 0,1 are lost\n"
     "0 assign -o array -d 2 -a 0: disk 2 (serial S2) is no spare of array \"a\": at once\n"
     "0 assign -d 3 --waiveconfirmation: disk 3 (serial S3) is no spare of the adapter: at once; the file system on it "
     "may be lost\n",
     true},
    {"a migration", THERE,
     R"([{"arrays": [{"name": "demo", "level": "RAID6", "disks": [0, 1, 2, 3, 4], "virtualDisks": [{"name": "data"}]}]}])",
     "0 migrate -l 0 -r 6 -d 0,1,2,3,4: array 0 \"demo\" is RAID5 on 3 disks; wanted is RAID6 on 5 disks: the "
     "redundancy of RAID5 is kept on the way, that of RAID6 comes at the end\n"},
};

INSTANTIATE_TEST_SUITE_P(Told, Telling, testing::ValuesIn(told));
INSTANTIATE_TEST_SUITE_P(Mistakes, Planning, testing::ValuesIn(mistakes));

void PrintTo(const Case& given, std::ostream* to) {
    *to << given.name;
}

// An array that migrates is as if it had arrived; what comes behind it waits.
TEST(PlanningOnTheWay, waitsForAMigration) {
    Json report = reportOf(THERE);
    Json& array = report["adapters"][0]["arrays"][0];
    array["activity"] = {{"kind", "migration"}, {"state", "running"}};
    Json& vd = array["virtualDisks"][0];
    vd["activity"] = array["activity"];
    vd["target"] = Json::parse(R"({"level": "RAID5", "disks": [0, 1, 2, 3], "stripe": 64, "size": 161061273600})");
    const Wanted wanted = wantedIn({{"adapters", Json::parse(R"([{"arrays": [{"name": "demo", "disks": [0, 1, 2, 3],
        "virtualDisks": [{"name": "data", "size": "150GiB"}, {"name": "more", "size": "2500GiB"}]}]}])")}});
    EXPECT_EQ(linesOf(makePlan(report, wanted, {})), "waits: 0 create -o vd -a 0 -n more -s 2560000\n");
}

TEST(PlanningOnTheWay, saysWhatIsLeftAlone) {
    const Wanted wanted = wantedIn({{"adapters", Json::parse(R"([{}])")}});
    const Plan plan = makePlan(reportOf(THERE), wanted, {true, -1});
    EXPECT_EQ(plan.leftAlone,
              (std::vector<std::string>{"array 0 \"demo\" on adapter 0", "virtual disk 0 \"data\" on adapter 0"}));
}

TEST(PlanningOnTheWay, tellsOfWhatNobodyRebuilds) {
    Json report = reportOf(THERE);
    report["adapters"][0]["arrays"][0]["virtualDisks"][0]["status"] = "degraded";
    const Wanted wanted = wantedIn({{"adapters", Json::parse(R"([{}])")}});
    const Plan plan = makePlan(report, wanted, {});
    ASSERT_EQ(plan.notes.size(), 1U);
    EXPECT_EQ(plan.notes[0], "virtual disk 0 \"data\" on adapter 0 is degraded, and nothing rebuilds it; \"ktreport\" "
                             "says what to do");
    report["adapters"][0]["arrays"][0]["activity"] = {{"kind", "rebuild"}, {"state", "running"}};
    EXPECT_EQ(makePlan(report, wanted, {}).notes.size(), 0U);
}

TEST(PlanningOnTheWay, refusesWhatIsNotKnown) {
    Json report = reportOf(THERE);
    report["unread"].push_back({{"adapter", 0}, {"call", "KT_LD_GetInfo"}, {"status", 2}, {"text", "Failed"}});
    EXPECT_THROW(makePlan(report, wantedIn({{"adapters", Json::parse("[{}]")}}), {}), IncompleteReport);
}
} // namespace

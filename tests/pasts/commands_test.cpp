// Command lines of ktsetup and ktcfg, most of them right: what they are handed, print and write, and which calls they
// make.
#include "past.h"

#include "Public/lostOutput.h"
#include "Public/start.h"
#include "ktsetup/historyLine.h"
#include "raid/members.h"
#include "state/adapterInfo.h"
#include "tests/fuzz/passing/commands.h"

static const char* const PASTS[] = {
    "e50f fce1 cddc 2aa2 9184 ea53 fa1b f62c b38d 9861 f968 eeda ",
    "9f89 96ec b287 ccb1 f427 9981 ab9c 8c3e c5bb e437 1928 c2d5 ",
    "47f0 dc53 d1b5 fc25 2334 8f1a f915 e965 0ef7 3bb7 b9ff 8608 ",
    "d784 c338 f950 0aae f1a9 ea33 3377 dffe b85c 0fd7 c950 e5ac ",
    "9a95 e6e9 d153 ba91 a901 1a60 6da0 1da4 3a8c a1a1 b7f2 22fe ",
    "655b fce5 2b2f 2909 8fab 0ec7 335d 2b4e 01af c653 fce4 8e4c ",
    "418f 3da3 9375 c721 b919 7b5a a171 bb54 df8b 6b60 1574 79a7 ",
    "de2b 8f1a 3d99 3f2f 3572 f995 44ad 08a0 4901 5143 fd63 0e83 ",
    "e479 8dcb a719 e276 8b47 db6f 038f bb43 bc3a 4c3d ee2a 3e2b ",
    "6928 27e8 fff8 5c93 ac99 5098 2e55 fc83 23ea 27ef 91a2 5145 ",
    "ffe5 0356 90bf 4c95 7030 a15e d7b8 f5fd 2f3d 863e 64a6 029d ",
    "2b8f a967 9368 f91a ab14 dc78 3bb0 1376 5a94 cdf2 02da d9dd ",
    "5b76 ae31 5ecb 11a0 ef0d 8abe b68e 7878 bbdd 154b 6ade 256e ",
    "ad0b 8bea 5e29 b8d5 7f23 6e9e b37c 3c75 66d7 3734 ffe3 ab53 ",
};

// Lines of commands whose options go together, or of several commands. An A stands before what only the array-based
// set has, an L before what only the other one has. Of [] half are left out, of {|} one is taken. $ stands for a value.
static const char* const LINES[] = {
    "A create -o array -r $r [-n $n] [-s $s] [-b {16|64|128}] [--cache$o] [--sizeonly] [--waiveconfirmation]",
    "A create -o array -r $r -n $n",
    "A create [-o vd] -a $a [-n $n] [-s $s] [-c {on|off|auto}] [-w {wt|wb|auto}] [-p {ra|none}] [-g {0|1|10}] "
    "[-i {quick|foreground|background|intelligent|none}] [[-l $i]]",
    "A create -o auto -t {disable|enable}",
    "L create -r $r [-n $n] [-s $s] [-b {16|64|128}] [-c $o] [-w {wt|wb}] [-p {ra|none}] [-g {0|1|10}] "
    "[-i {quick|background|intelligent|none}] [--forcesize] --waiveconfirmation",
    "L create -r $r [-n $n]",
    "maxcreatesize -r $r [-g {0|1|10}]",
    "migrate [-a {start|size}] $m",
    "A migrate -a {pause|stop|resume|restart} -l $a",
    "{L rebuild|L migrate|init|cc} -a {start|pause|stop|resume|restart} -l {$v|$y|$y}",
    "A {rebuild|copyback} -a {start|pause|stop|resume|restart} -l $a",
    "{A rebuild -l $a|L rebuild -l $v} -d $1",
    "mp [-a {start|pause|stop|resume|restart}] -d $d",
    "delete -o vd -i $y [[-f]]",
    "delete -o {vd -i $v|spare -i $d|A array -i $a} [-f] [--waiveconfirmation]",
    "{import|L report} -i $e",
    "assign [-o hba] -d $1 [--waiveconfirmation]",
    "A assign -o array -d $1 -a $a",
    "set -o hba [--autorebuild $o] [--copyback $o] [--pollsmart $o] [--alarm $o] [--bgarate $p] [--syncrate $p] "
    "[--initrate $p] [--rebuildrate $p] [--migrationrate $p] [--copybackrate $p] [--mprate $p]",
    "set -o {hba --mute|hba --consolidation $o|hba --efficiency $o|A bbu --power {charge|discharge|stop}}",
    "set -o {L driver --speed 3|vd -i $v --restore $o|pd -i $d --speed {1.5|3|6|12}|pd -i $d --status offline}",
    "set -o vd -i $v [-n $n] [-c {on|off|auto}] [-w {wt|wb}] [-p {ra|none}] [--waiveconfirmation]",
    "A set -o array -i $a [-n $n] [-c $o]",
    "set -o pd -i $d [-c $o] [--smart $o] [--status {online|offline}] [--speed {1.5|3|6}] --waiveconfirmation",
    "L aesentry -o {getInfo|getInfo -i $i|getCfg -i $i -p $w|setCfg -i $i -k $w -p $w|setCfg -i 2 -k $w -p p}",
    "L aesop -o {changePwd -e $i -p $w -w $w|verifyKey -e $i -p $w -k $w|verifyKey -e 2 -p p -k $w}",
    "L aesport -o {getCfg|getCfg -i $i|set -i $i --aeson|set -i $i --aesoff|mount -i $i -e $i -p $w|dismount -i $i}",
    "L forceonline -i $d [-p 50]",
    "enc -o {enc [-i {0|1}]|elecfg -i {0|1}}",
    "enc -o {ele|ele|elecfg} [-i {1|1|0}] -t {dev|arydev|pow|fan|tpr|dor|alm|dpl|vlt} [-e $i]",
    "enc -o {ele|ele|elecfg} -i 1 -t {dev|arydev|pow|fan|tpr|dor|alm|dpl|vlt}",
    "register [-t mailbox] {-a read -d {0|1}|-a write -d {0|1} -v 0x$i}",
    "nvsram -a {read|read -s 0x$i00|read -c $s|write [-s $s] -c $i -p 0x5A}",
    "flash {-a backup -f $f -t {bios|firmware|autoload}|-a erase -p pd|-a erase -p pdforce}",
    "flash -a {update|version} -f {fw|fw|$f} -t {bios|firmware|autoload|bin|raw}",
    "flash -a backup -f cfg -t {bios|firmware|autoload};[!change;]flash -a update -f cfg -t {bios|firmware|autoload}",
    "ssd [-d $x [-a {health|stop|status|start [-t {short|long}]}]]",
    "ssdop -d $x {-a version|{-f mc|-f $f} [-m {now|later}] [--waiveconfirmation]}",
    "info -o {vd -i $v|ld -i $v|pd -i $d|blk -i $i|hba|pm -i $i|exp -i $i|A bbu|L tandem -i $v|A array -i $a}",
    "info -o {vd|pd|L pm|A exp|spare|A array|L tandem|blk}",
    "info -o {vd -i $v|L tandem -i $v|L tandem}",
    "get -o {vd -i $v|pd -i $d|hba|driver|link|vd|pd|A array -i $a|A array}",
    "{event|A message|error -c 0|version|help {info|set|locate|?}|help -i|pause -c {0|1|2}}",
    "{devmap -o vd [-i $v]|devmap -o pd [-i $d]|status -o pd [-i $d]|set -o hba -i 0 -n $n|get -o vd -i $y}",
    "{smart -p $d|rescan -a {scan|getcount|getcount -f}|locate -i $d -a $o|wipe -d $1|wipe -d $d -f|adapter -i $i}",
    "tandem -o {empty|count|delete} -d $v",
    "backup_cfg {-f $f|-t phy|}",
    "backup_cfg -f cfg -t phy;[!change;]{restore_cfg|check} -f cfg -t phy",
    "backup_cfg -f cfg;[!change;]{restore_cfg|check} -f cfg [--raid]",
    "backup_cfg -f cfg;!clear;[!change;]{restore_cfg|check} -f cfg --raid",
    "backup_cfg -f cfg;!ports;[!change;]restore_cfg [-f cfg] --autoset",
    "{restore_cfg|check} -f $f [--raid]",
};
static const std::map<char, const char*> VALUES = {
    {'r', "{0 -d $2|1 -d $2|5 -d $3|5 -d $4|6 -d $4|10 -d $4|1e -d $3|50 -d $6|60 -d $8|6 -d $4 -q $i|60 -d $8 -q "
          "$i|hc -d $2|hybrid -d $2}"},
    {'n', "{data|My~VD|a_1|x|data|\"b~c\"|toolongforanynameofall}"},
    {'w', "{p|word|k|0123456789abcdef}"},
    {'f', "{f1|f2|f~3|\"f~4\"|cfg|folder|none/f|fw}"},
    {'o', "{on|off}"},
    {'e', "{$v|$v|8|4}"},
};
// What is wrong nearly everywhere.
static const char* const WRONG[] = {"",           "-",   "-1",  "65536", "99999999999999999999", "0x1F",  "1,,2", "1,1",
                                    "4294967297", "all", "1.5", "a%nb",  "x\x01\x7F\xC3",        "\"a b", "1e"};

// Two draws where the order counts are two statements.
template <class Words>
static std::string oneOf(const Words& words) {
    return words[below(std::size(words))];
}

static std::string freeDisks(const Adapters& run, size_t count) {
    const Ids ids = freeDisks(run.context());
    const size_t most = ids.size() < count ? 1 : ids.size() - count + 1;
    std::string list;
    for (size_t at = below(most); count > 0; ++at, --count)
        list += (list.empty() ? "" : ",") + std::to_string(at < ids.size() ? ids[at] : at % 24);
    return list;
}

static std::string migration(const Adapters& run) {
    const Owner owner = {arrayBasedRaid ? OwnerKind::Array : OwnerKind::Vd, arrayBasedRaid ? run.array() : run.vd()};
    static const char* const levels[] = {"0", "5", "6", "10"};
    std::string line = "-l " + std::to_string(owner.id) + " -r " + oneOf(levels) + " -d ";
    for (const KT_U16 pd : groupOf(run.context(), owner).members)
        line += std::to_string(pd) + ",";
    return line + freeDisks(run, 1 + below(2));
}

static std::string value(const Adapters& run, char what) {
    const auto isBusy = [](const _LD_Info& vd) { return vd.BGAStatus != KT_STATE_NONE; };
    const auto isSsd = [](const _HD_Info& disk) { return isSolidState(disk); };
    if (isdigit(what) != 0) return freeDisks(run, static_cast<size_t>(what - '0'));
    switch (what) {
    case 'm':
        return migration(run);
    case 'v':
        return std::to_string(run.vd());
    case 'a':
        return std::to_string(run.array());
    case 'd':
        return std::to_string(run.disk());
    case 'y':
        return std::to_string(run.among(idsWhere<_LD_Info>(run.context(), isBusy), 5));
    case 'x':
        return std::to_string(run.among(idsWhere<_HD_Info>(run.context(), isSsd), 12));
    default:
        return std::to_string(below(what == 's' ? 3000 : what == 'p' ? 110 : 5));
    }
}

// Adds what a line says up to the sign that ends it; false when that is of the other command set.
static bool expand(const Adapters& run, const char*& at, std::string& to) {
    const bool other = strncmp(at, arrayBasedRaid ? "L " : "A ", 2) == 0;
    if (strncmp(at, "L ", 2) == 0 || strncmp(at, "A ", 2) == 0) at += 2;
    for (; *at != '\0' && strchr("]|}", *at) == nullptr; ++at) {
        std::string part(1, *at);
        if (*at == '[') {
            part.clear();
            expand(run, ++at, part);
            if (below(2) == 0) part.clear();
        } else if (*at == '{') {
            std::vector<std::string> choices;
            while (*at != '}') {
                std::string choice;
                if (expand(run, ++at, choice)) choices.push_back(choice);
            }
            part = oneOf(choices);
        } else if (*at == '$') {
            const auto named = VALUES.find(*++at);
            const char* rule = named == VALUES.end() ? "" : named->second;
            part.clear();
            expand(run, rule, part);
            if (named == VALUES.end()) part = value(run, *at);
        }
        const bool isValue = *at == '$' || (*at == '}' && to.ends_with(' '));
        to += isValue && below(40) == 0 ? oneOf(WRONG) : part;
    }
    return !other;
}

// An option of the command, by its letter or its name.
static std::string anyOption(const std::string& command) {
    const CommandSet& set = arrayBasedRaid ? arrayBasedCommands : ldBasedCommands;
    std::vector<std::string> options = {"-h"};
    for (const auto& [rows, size] : {std::pair{set.general, set.generalSize}, {set.internal, set.internalSize}}) {
        for (const _cmd_struct* row = rows; row < rows + size; ++row) {
            if (row->cmd != command) continue;
            for (const LongOption* option = optionsOf(row->cmdHandler)->longOptions; option->value != 0; ++option) {
                if (option->name[0] != '\0') options.push_back(std::string("--") + option->name);
                if (isalpha(option->value) != 0) options.push_back({'-', static_cast<char>(option->value)});
            }
        }
    }
    const std::string option = oneOf(options);
    return option == "--output" ? "-output" : option;
}

// A word of a line is missing, there twice or another, or one more option is there.
static std::string spoilt(const std::string& line) {
    std::vector<std::string> words = {""};
    for (const char byte : line)
        byte == ' ' ? words.emplace_back() : words.back() += byte;
    const size_t at = below(words.size());
    const size_t kind = below(6);
    if (kind == 0) words[at] = words[at].substr(0, words[at].size() / 2);
    if (kind == 1) words[at] = oneOf(WRONG);
    if (kind == 2) words.erase(words.begin() + static_cast<long>(at));
    if (kind == 3) words.push_back(at + 1 < words.size() ? words[at] + " " + words[at + 1] : "");
    if (kind > 3) words.push_back(anyOption(words[0]));
    if (kind > 4) words.push_back(below(2) == 0 ? oneOf(WRONG) : std::to_string(below(5)));
    std::string spoiltLine;
    for (const std::string& word : words)
        spoiltLine += (spoiltLine.empty() ? "" : " ") + word;
    return spoiltLine;
}

static std::string rolledLine(const Adapters& run) {
    std::string line;
    for (bool fits = false; !fits;) {
        line.clear();
        const char* at = LINES[below(std::size(LINES))];
        fits = expand(run, at, line);
    }
    return below(4) == 0 ? spoilt(line) : line;
}

// A byte of a file is another, most often a digit, or a line is gone.
static void change(const std::string& name) {
    std::string bytes = fileText(name);
    if (bytes.empty()) return;
    const size_t at = below(bytes.size());
    const size_t kind = below(6);
    const size_t digit = std::min(bytes.find_first_of("0123456789", at), bytes.size() - 1);
    if (kind > 1) bytes[digit] = static_cast<char>('0' + below(10));
    if (kind == 1) bytes[at] = static_cast<char>(below(256));
    if (kind == 0) bytes.erase(at, bytes.find('\n', at) - at + 1);
    writeText(name, bytes);
}

// What stands in a line in the place of a command.
static void prepare(const Adapters& run, const std::string& what) {
    if (what == "!change") {
        for (size_t times = below(4); times > 0; --times)
            change(below(5) == 0 ? "setcfg.txt" : "cfg");
    } else if (what == "!ports") {
        std::string ports = "0";
        for (int port = 1; port < adapterInfo(run.context()).PortCount; ++port)
            ports += "," + std::to_string(port);
        writeText("setcfg.txt", "[PORT_GROUP]=" + ports + R"(
[SAS_ADDRESS_START]=500A1F40:00000010
[SAS_ADDRESS_END]=500A1F40:FFFFFFFF
[SAS_ADDRESS_CURRENT]=500A1F40:0FFFFFFF
[SERIALNUMBER_START]=TARN0000010000000001
[SERIALNUMBER_END]=TARN0000010000000099
[SERIALNUMBER_CURRENT]=TARN0000010000000009
)");
    } else {
        KT_API_Initialize();
        for (const KT_U16 vd : all<_LD_Info>(run.context()))
            KT_LD_Delete(run.adapter, vd, 1);
        for (const KT_U16 array : all<_DG_Info>(run.context()))
            KT_DG_Delete(run.adapter, array);
        for (const KT_U16 pd : all<_HD_Info>(run.context()))
            KT_PD_Spare2FreeHD(run.adapter, pd);
        KT_API_Finalize();
    }
}

struct Commands : Past {
    // Runs a line and keeps what came of it; what it left in its words, too.
    void runLine(const std::string& line) {
        std::string words = "ktsetup " + std::to_string(run.adapter) + " " + line;
        std::vector<char*> argv(words.size() + 2);
        int count = 0;
        parse(&count, argv.data(), words.data());
        if (count < 3) return;
        std::replace(words.begin(), words.end(), '~', ' ');
        int result = 0;
        text += "\n$ " + withoutSecrets(line) + "\n";
        chooseCommandsFor(line);
        runHere([&] { result = runOneShot(takeCommandLine(count, argv.data())); });
        text += "= " + std::to_string(result) + " " + words + "\n";
    }
    // Nobody takes what a child prints, which it says.
    int printInVain() {
        close(STDOUT_FILENO);
        if (below(2) == 0) open("/dev/full", O_WRONLY);
        if (below(2) == 0) watchStandardOutput();
        char words[][9] = {"ktsetup", "info", "-o", "hba"};
        char* argv[] = {words[0], words[1], words[2], words[3], nullptr};
        return runOneShot(takeCommandLine(4, argv));
    }
};

TEST_P(Commands, DoWhatTheyDid) {
    for (unsigned step = 1; step <= 240; ++step) {
        if (step % 30 == 1) begin(GetParam() + step);
        happen(below(4) / 3);
        std::filesystem::remove("cfg");
        run.adapter = static_cast<KT_U8>(below(find<GlobalState>(*run.store, ADAPTER_GLOBAL, 0)->adapterCount));
        arrayBasedRaid = run.adapter == 0;
        std::istringstream lines(rolledLine(run));
        for (std::string line; std::getline(lines, line, ';');)
            line.starts_with('!') ? prepare(run, line) : runLine(line);
        if (step % 20 != 0) continue;
        int status = 0;
        runHere([&] { status = waitFor(startChild([&] { return printInVain(); })); });
        text += std::to_string(status);
        note();
    }
    Past::compare(PASTS);
}
INSTANTIATE_TEST_SUITE_P(Seeds, Commands, testing::Range(0U, seeds(std::size(PASTS))));

#include "past.h"

#include "activities/activities.h"
#include "changes/arrival.h"
#include "changes/branches.h"
#include "changes/health.h"
#include "devices/batteryDeeds.h"
#include "devices/flashImage.h"
#include "devices/solidState.h"
#include "frame/settle.h"
#include "media/wear.h"
#include "raid/damage.h"
#include "state/simClock.h"
#include "tests/fuzz/passing/calls.h"

void (*beforeCall)(const std::string& call);
KT_U8 (*afterCall)(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status);

// What none of the others has.
static const BuiltInLab RARE = {"rare", R"({"adapters": [
  {"type": "array-based", "battery": true, "expanders": [{}], "enclosures": [{"id": 1}], "disks": [
     {"count": 17, "type": "SAS", "size": "20GB"}, {"size": "20GB", "spare": "global"},
     {"count": 2, "type": "SATA SSD", "size": "480GB"}],
   "arrays": [{"level": "RAID60", "disks": [0, 1, 2, 3, 4, 5, 6, 7], "virtualDisks": [{"name": "parts"}]}]},
  {"type": "LD-based", "MaxAESEntry": 5, "MaxAESPort": 4, "disks": [
     {"count": 16, "size": "20GB"}, {"size": "20GB", "patrol": {"percent": 40, "state": "paused"}},
     {"type": "SATA SSD", "size": "480GB"}],
   "keys": [{"id": 2, "key": "k", "password": "p", "ports": [{"id": 1, "enabled": true}]}],
   "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "10GiB", "linkedDisk": 2},
                    {"level": "RAID60", "disks": [4, 5, 6, 7, 8, 9, 10, 11], "size": "10GiB"}]},
  {"type": "LD-based", "ModelNumber": "", "SerialNo": "", "DevID": 17920, "Features": 87, "AdvancedFeatures": 163843, "disks": [
     {"count": 8, "type": "SATA", "size": "20GB"}, {"count": 2, "type": "SATA", "size": "20GB", "sector": 4096}]}]})"};
static const char* const LABS[] = {"rare", "default", "troubled", "rare", "hostile", "rare", "empty"};

// In this run: answers that were changed, and calls until one fails.
static unsigned mutated;
static size_t untilFailure;

// Something else in the answer: a byte, a number of two bytes at its bounds, or all of it.
static void mutate(const AnswerBytes& answer) {
    auto* bytes = static_cast<KT_U8*>(answer.at);
    // Lists answer with a count and an index first, and are the longest answers.
    const size_t reach = below(3) == 0 ? std::min<size_t>(answer.size, sizeof(_RequestHeader)) : answer.size;
    static const KT_U16 bounds[] = {0, 1, 0x7F, 0xFF, 0x100, 0x7FFF, 0xFFFE, 0xFFFF};
    const KT_U16 bound = bounds[below(std::size(bounds))];
    const size_t at = below(reach);
    const size_t kind = below(10);
    if (kind == 0) {
        memset(bytes, static_cast<int>(below(256)), answer.size);
    } else if (kind == 1) {
        std::generate_n(bytes, answer.size, [] { return static_cast<KT_U8>(chance()); });
    } else if (kind < 5) {
        if (at + sizeof bound <= answer.size) memcpy(bytes + (at & ~size_t{1}), &bound, sizeof bound);
    } else {
        bytes[at] = static_cast<KT_U8>(chance());
    }
}

// Behind a hundred wrong answers, long lists go on as they are.
static KT_U8 answerWrongly(const std::vector<AnswerBytes>& answers, KT_U8 status) {
    if (below(10) != 0) return status;
    for (const AnswerBytes& answer : answers) {
        if (answer.size == 0 || ++mutated > 100) continue;
        for (size_t times = below(4); times > 0; --times)
            mutate(answer);
    }
    return below(20) == 0 ? static_cast<KT_U8>(chance()) : status;
}

// What would be refused may succeed as well.
static KT_U8 answerAtRandom(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status) {
    if (strncmp(name, "KT_API_", 7) == 0 && below(60) == 0) {
        if (strcmp(name, "KT_API_Initialize") == 0) KT_API_Finalize();
        return KT_ERR_FAILED;
    }
    // Without a library or adapters there is nothing to be tried.
    if (strncmp(name, "KT_API_", 7) == 0 || strcmp(name, "KT_Adapter_GetCount") == 0) return status;
    const KT_U8 answer = answerWrongly(answers, status);
    return answer != KT_OK && strstr(name, "Get") == nullptr && below(2) == 0 ? KT_U8{KT_OK} : answer;
}

static KT_U8 failOnce(const char* name, const std::vector<AnswerBytes>&, KT_U8 status) {
    if (strncmp(name, "KT_API_", 7) == 0 || untilFailure-- != 0) return status;
    return static_cast<KT_U8>(1 + below(200));
}

Past::Past() {
    unsetenv("KTRAID_SIM_CHECK");
    setenv("KTRAID_SIM_TRACE", trace.c_str(), 1);
    program_invocation_short_name = const_cast<char*>("kt");
    chance.seed(GetParam() + 1);
    std::filesystem::create_directories(folder.path + "/files/folder");
    std::filesystem::current_path(folder.path + "/files");
    writeText("fw", makeImage(*imageKind(1), {4, 8, 9, 1234}, 0, imageFiller(99, 300 * 1024)));
    writeText("mc", makeMicrocode("Petrel PS480G SSD", "PS50A", imageFiller(7, 300 * 1024)));
}

void Past::begin(size_t at) {
    lab = LABS[at % std::size(LABS)];
    BuiltInLab stopped = lab == "rare" ? RARE : *labNamed(lab);
    stopped.stoppedAt = run.now;
    if (run.store != nullptr) closeStore(run.store);
    replaceStore(folder.state, fillFromLab, &stopped);
    run.store = openExistingStore(folder.state);
}

Past::~Past() {
    closeStore(run.store);
    std::filesystem::current_path("/");
    unsetenv("KTRAID_SIM_TRACE");
}

static void befall(Adapters& run) {
    Context context = run.context();
    settle(context);
    const KT_U16 pd = run.disk();
    const KT_U16 pulled = Adapters::among(all<PulledDisk>(context), 20);
    const auto isBroken = [](const PdState& disk) { return disk.health == PD_FAILED; };
    const KT_U16 broken = Adapters::among(idsWhere<PdState>(context, isBroken), 20);
    const auto amount = static_cast<KT_U32>(below(300));
    const std::function<void()> deeds[] = {
        [&] { failDisk(context, pd); },
        [&] { pullDisks(context, {pd}); },
        [&] { tripSmart(context, pd, true); },
        [&] { insertDisks(context, {pulled}); },
        [&] { insertDisks(context, {pulled}); },
        [&] { replaceDisk(context, broken, [](_HD_Info&) {}); },
        [&] {
            addBadSectors(context, pd, BadSector{FLAW_UNREADABLE, 0, {}}, amount);
        },
        [&] { ageDisk(context, pd, agingWords()[below(agingWords().size())], amount); },
        [&] { removeBattery(context); },
        [&] { insertBattery(context); },
        [&] { pullEnclosure(context, 1); },
        [&] { insertEnclosure(context, 1); },
    };
    deeds[below(std::size(deeds))]();
    applyRates(context);
}

void Past::happen(size_t times) {
    for (; times > 0; --times) {
        beginTransaction(*run.store, Access::Write);
        run.adapter = static_cast<KT_U8>(below(find<GlobalState>(*run.store, ADAPTER_GLOBAL, 0)->adapterCount));
        befall(run);
        run.now += below(below(4) == 0 ? 3600000 : 3000);
        setClock(*run.store, run.now, 1000, true);
        commitTransaction(*run.store);
    }
}

void Past::runHere(const std::function<void()>& code) {
    static const char* const answers[] = {"y\n", "y\n", "y\n", "y\n", "y\n", "n\n", "x\n\ny\n", "no\n", "\n"};
    const std::string files[] = {folder.path + "/in", folder.path + "/out", folder.path + "/err"};
    std::string typed;
    for (int i = 0; i < 4; ++i)
        typed += answers[below(std::size(answers))];
    writeText(files[0], typed);
    int before[3];
    fflush(stdout);
    for (int fd = 0; fd < 3; ++fd) {
        before[fd] = dup(fd);
        const int file = open(files[fd].c_str(), fd == 0 ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(file, fd);
        close(file);
    }
    mutated = 0;
    if (GetParam() % 2 == 1) {
        untilFailure = below(16);
        afterCall = below(2) == 0 ? failOnce : answerAtRandom;
    }
    code();
    afterCall = nullptr;
    fflush(stdout);
    for (int fd = 0; fd < 3; ++fd) {
        dup2(before[fd], fd);
        close(before[fd]);
    }
    const std::string printed = fileText(files[1]);
    for (const char byte : printed)
        EXPECT_TRUE(iscntrl(static_cast<unsigned char>(byte)) == 0 || byte == '\n' || byte == '\t') << printed;
    text += printed + "! " + fileText(files[2]);
    std::ifstream lines(trace);
    for (std::string line; std::getline(lines, line);)
        text += line.substr(0, line.find(' ', line.find(" -> ") + 4)) + "\n";
    std::ofstream(trace, std::ios::trunc);
}

void Past::note() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator("."))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        const std::string bytes = fileText(file);
        text += file.string() + " " + std::to_string(sumOf(bytes)) + ":\n" + bytes.substr(0, 20000) + "\n";
    }
    std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    std::replace(name.begin(), name.end(), '/', '.');
    name += "." + lab + "." + std::to_string(++notes);
    if (const char* kept = getenv("PASTS")) writeText(std::string(kept) + "/" + name, text);
    char digits[8];
    snprintf(digits, sizeof digits, "%04x ", sumOf(text) & 0xFFFF);
    digests += digits;
    text.clear();
}

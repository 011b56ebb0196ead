// Shelves and cables that are pulled out and put back.
#include "changes/branches.h"
#include "commands.h"
#include "state/adapterInfo.h"

#include <memory>

using namespace sim;

struct BranchCommand {
    const char* word;
    const char* help;
    KT_U8 (*change)(const Context&, KT_U16);
    Branch (*behind)(const Context&, KT_U16); // whom it takes away, to ask about; null = nobody
    std::string missing;                      // what there is none of
};

static void run(const Options& options, KT_U16 id, const BranchCommand& what) {
    Branch branch;
    if (what.behind) changeAdapter(options, [&](Context& context) { branch = what.behind(context, id); });
    askAboutDisks(options, branch.disks);
    changeAdapter(options, [&](Context& context) {
        const KT_U8 status = what.change(context, id);
        if (status == KT_ERR_NO_RESOURCE) throw CommandFailure{"other disks have taken the places meanwhile"};
        if (status != KT_OK) throw CommandFailure{what.missing + " " + std::to_string(id)};
        settleAll(context.store);
    });
}

static void addBranch(const Command& group, Options& options, const char* name, unsigned most,
                      const BranchCommand& what) {
    const Command command = group.addCommand(what.word, what.help);
    const auto id = std::make_shared<unsigned>(0);
    command.addOption(name, *id, "Its number").required().check(inRange(0U, most));
    addAdapterOption(command, options);
    if (what.behind) addForceOption(command, options);
    command.onGiven([&options, id, what] { run(options, static_cast<KT_U16>(*id), what); });
}

void addShelfMoves(const Command& enclosure, Options& options) {
    addBranch(enclosure, options, "ENCLOSURE", 65534,
              {"pull", "Lose the whole shelf, with all its disks at once", pullEnclosure, branchOfEnclosure,
               "there is no enclosure"});
    addBranch(enclosure, options, "ENCLOSURE", 65534,
              {"insert", "Put a shelf back that was pulled, with its disks", insertEnclosure, nullptr,
               "there is no pulled enclosure"});
}

static const KT_U8 NO_PORT = 255;

static KT_U8 portOf(KT_U16 id) {
    return id < NO_PORT ? static_cast<KT_U8>(id) : NO_PORT;
}

static std::string listText(const char* one, const std::vector<KT_U16>& ids) {
    if (ids.empty()) return "";
    std::string text = std::string("  ") + one + (ids.size() == 1 ? "" : "s");
    for (const KT_U16 id : ids)
        text += " " + std::to_string(id);
    return text;
}

// What is at each port that is in use, a port a line.
static void showCables(const Context& context) {
    for (KT_U8 port = 0; port < adapterInfo(context).PortCount; ++port) {
        const Branch branch = branchOfPort(context, port);
        std::string text = listText("expander", branch.expanders) + listText("port multiplier", branch.multipliers) +
                           listText("enclosure", branch.enclosures) + listText("disk", branch.disks);
        if (find<AwayBranch>(context, port)) text += "  pulled out";
        if (!text.empty()) printf("Port %u%s\n", unsigned{port}, text.c_str());
    }
}

void addCable(const Command& app, Options& options) {
    const Command cable = app.addCommand("cable", "Pull a cable of the adapter out, or put it back");
    cable.requireCommand(1, 1);
    const Command show = cable.addCommand("show", "Print what is at each port");
    addAdapterOption(show, options);
    show.onGiven([&options] { changeAdapter(options, showCables); });
    addBranch(cable, options, "PORT", NO_PORT - 1U,
              {"pull", "Lose all that is behind this port of the adapter, at once",
               [](const Context& context, KT_U16 id) { return pullCable(context, portOf(id)); },
               [](const Context& context, KT_U16 id) { return branchOfPort(context, portOf(id)); },
               "there is nothing at port"});
    addBranch(cable, options, "PORT", NO_PORT - 1U,
              {"insert", "Put a pulled cable back, with all that was behind it",
               [](const Context& context, KT_U16 id) { return insertCable(context, portOf(id)); }, nullptr,
               "no cable was pulled from port"});
}

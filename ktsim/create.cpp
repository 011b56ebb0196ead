#include "commands.h"
#include "lab/lab.h"
#include "scratch.h"
#include "state/storeFile.h"
#include "twin.h"

#include <cstdio>
#include <memory>

using namespace sim;

struct CreateOptions {
    std::string lab = "default";
    std::string at;
    bool list = false;
};

static void refill(Store& store, const BuiltInLab& lab) {
    try {
        beginTransaction(store, Access::Write);
        eraseEverything(store);
        fillFromLab(store, &lab);
        commitTransaction(store);
    } catch (...) {
        rollbackTransaction(store);
        closeStore(&store);
        throw;
    }
    closeStore(&store);
}

// A sound state is refilled in one transaction, which other processes see as one step; what cannot be opened, or shows
// its damage only then, is replaced as a file.
static void replaceState(const Options& options, const std::string& path, const BuiltInLab& lab) {
    Store* store = nullptr;
    std::string damage;
    try {
        store = openExistingStore(path);
    } catch (const StoreFailure& failure) {
        if (failure.status == KT_ERR_NO_RESOURCE) throw;
        damage = "\n(" + failure.message + ")";
    }
    const std::string question = "Everything in " + path + " will be lost." + damage + " Go on?";
    if (!confirm(options, question)) {
        closeStore(store);
        throw CommandFailure{"nothing was changed"};
    }
    try {
        if (store) return refill(*store, lab);
    } catch (const StoreFailure& failure) {
        if (failure.status == KT_ERR_NO_RESOURCE) throw;
    }
    replaceStore(path, fillFromLab, &lab);
}

// A report is not only to be understood: what is made of it must tell the same.
static void checkReport(const BuiltInLab& lab) {
    const Json report = Json::parse(lab.text, nullptr, false);
    if (!report.is_object() || !report.contains("report")) return;
    Scratch scratch;
    makeScratch(scratch);
    try {
        makeTwin(scratch.path("state.db"), report, lab.name, lab.stoppedAt);
    } catch (const CommandFailure& failure) {
        throw CommandFailure{failure.message};
    }
}

static void create(const Options& options, const CreateOptions& wanted) {
    if (wanted.list) {
        for (const std::string& name : labNames())
            printf("%s\n", name.c_str());
        return;
    }
    const std::string text = labText(wanted.lab);
    const KT_U64 stoppedAt = wanted.at.empty() ? 0 : readTime(wanted.at);
    const BuiltInLab lab{wanted.lab.c_str(), text.c_str(), stoppedAt};
    closeStore(openMemoryStore(fillFromLab, &lab)); // a lab with a mistake costs nobody his state
    checkReport(lab);
    const std::string path = statePathOf(options);
    if (stateMayGo(path)) {
        replaceState(options, path, lab);
    } else {
        closeStore(openStore(path, fillFromLab, &lab));
    }
}

void addCreate(const Command& app, Options& options) {
    const Command command = app.addCommand("create", "Make the state anew from a lab");
    const auto wanted = std::make_shared<CreateOptions>();
    command.addOption("-l,--lab", wanted->lab, "A built-in lab, a JSON file, or - for standard input").showDefault();
    command.addOption("--at", wanted->at, "Stop the clock at this time in UTC: \"2026-01-05 08:00:00\"");
    command.addFlag("--list", wanted->list, "Name the built-in labs");
    addForceOption(command, options);
    command.onGiven([&options, wanted] { create(options, *wanted); });
}

void addShow(const Command& app, Options& options) {
    const Command command = app.addCommand("show", "Print the whole state as a lab that create reads back");
    command.onGiven([&options] {
        std::string text;
        changeState(options, [&](Store& store) { text = stateToLab(store); });
        fputs(text.c_str(), stdout);
    });
}

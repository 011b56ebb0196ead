#include "ktcfg/planning.h"

#include <cstdio>

#include "Public/fileName.h"
#include "Report/document.h"
#include "Report/load.h"
#include "Report/look.h"
#include "Report/problems.h"
#include "ktcfg/planWords.h"

int typedAdapter = -1;

static Take takeOption(int option, const char* value, PlanRequest& request) {
    switch (option) {
    case 'f':
        request.file = unquotedName(value);
        return Take::Yes;
    case OPT_FROM:
        request.from = unquotedName(value);
        return Take::Yes;
    case OPT_DELETE:
        request.options.mayDelete = true;
        return Take::Yes;
    case OPT_CHECK_ONLY:
        request.check = true;
        return Take::Yes;
    case OPT_YES:
        request.yes = true;
        return Take::Yes;
    case OPT_WAIT:
        request.wait = true;
        return Take::Yes;
    default:
        return Take::Help;
    }
}

// Words that were understood one by one, but do not go together, or say nothing.
static bool checkRequest(const char* command, const PlanRequest& request, const OptionCounts& given) {
    if (given[OPT_FROM] > 1) {
        out(ErrorDuplicate);
        return false;
    }
    if (request.file.empty() || (given[OPT_FROM] != 0 && request.from.empty())) {
        out("%s: the name of a file is empty\n", command);
        return false;
    }
    if (request.file == "-" && request.from == "-") {
        out("%s: only one of the two files can come from standard input\n", command);
        return false;
    }
    return true;
}

bool readRequest(const CommandCall& call, const OptionSet& set, PlanRequest& request, int& result) {
    OptionCounts given;
    auto take = [&](int option, const char* value) { return takeOption(option, value, request); };
    if (!scanOptions(call, set, given, result, take)) {
        if (result != 0) result = RESULT_USAGE;
        return false;
    }
    result = RESULT_USAGE;
    if (!givenOnce(set, given) || !givenRequired(set, given, call.argv[0])) return false;
    if (optind < call.argc) {
        out("%s: '%s' is one word too many.\n", call.argv[0], shownName(call.argv[optind]).c_str());
        return false;
    }
    request.options.adapter = typedAdapter;
    return checkRequest(call.argv[0], request, given);
}

Json readNow(int adapter, bool forTwin) {
    ReadOptions options;
    options.adapter = adapter;
    options.records = forTwin;
    options.onlyLayout = !forTwin;
    const Machine machine = readMachine(options);
    if (!machine.opened) {
        const Refusal& refusal = machine.refusals.front();
        throw ReadFailure{"the library does not start: " + refusal.text};
    }
    return documentOf(machine, defaultThresholds());
}

std::optional<Planning> planFor(const PlanRequest& request) {
    Planning planning;
    planning.wanted = wantedIn(loadJson(request.file, "lab or report"));
    if (typedAdapter >= 0 && planning.wanted.adapters.size() > 1) {
        planning.wanted.reasons.push_back({"adapters", "are several; the index of one was typed"});
    }
    planning.report = request.from.empty() ? readNow(-1, true) : loadReport(request.from).document;
    planning.plan = makePlan(planning.report, planning.wanted, request.options);
    out("%s", obstaclesText(planning.plan, request.file).c_str());
    if (canBeReached(planning.plan)) return planning;
    out("Nothing is changed.\n");
    return std::nullopt;
}

// What a command said without the line about the driver, with which each begins.
static std::string withoutDriver(const std::string& said) {
    return said.starts_with("SG driver version ") ? said.substr(said.find('\n') + 1) : said;
}

std::optional<Rehearsal> rehearsed(const PlanRequest& request, const Planning& planning) {
    Rehearsal rehearsal = rehearse(planning.report, planning.plan.steps);
    const size_t done = rehearsal.seconds.size();
    if (done < planning.plan.steps.size()) {
        out("Rehearsed on a twin, a command fails, and nothing is changed here:\n%s%s",
            stepsText(planning.plan.steps, done, done + 1).c_str(), withoutDriver(rehearsal.said).c_str());
        return std::nullopt;
    }
    const Plan left = makePlan(rehearsal.after, planning.wanted, request.options);
    if (canBeReached(left) && left.steps.empty()) return rehearsal;
    out("Rehearsed on a twin, the plan does not lead to what is wanted, and nothing is changed here. Different is:\n%s",
        differencesText(left).c_str());
    return std::nullopt;
}

static int say(const std::string& what) {
    fprintf(stderr, "ktcfg: %s\n", shownName(what).c_str());
    return RESULT_NOT_WANTED;
}

int guarded(int (*work)(const PlanRequest& request), const PlanRequest& request) {
    try {
        return work(request);
    } catch (const LoadFailure& failure) {
        return say(failure.message);
    } catch (const ReadFailure& failure) {
        return say(failure.message);
    } catch (const IncompleteReport& failure) {
        return say(failure.message);
    } catch (const TwinFailure& failure) {
        return say(failure.message);
    } catch (const std::exception& error) {
        return say(error.what());
    }
}

// ktcfg plan: what leads from the adapters to what a file wants.
#include "ktcfg/planWords.h"
#include "ktcfg/planning.h"

static int check(const Planning& planning) {
    const size_t count = planning.plan.steps.size();
    if (count == 0) {
        out("Nothing would change.\n");
        return RESULT_AS_WANTED;
    }
    out("%zu %s would be carried out.\n", count, count == 1 ? "command" : "commands");
    return RESULT_NOT_WANTED;
}

static int plan(const PlanRequest& request) {
    const std::optional<Planning> planning = planFor(request);
    if (!planning) return RESULT_NOT_WANTED;
    if (request.check) return check(*planning);
    if (planning->plan.steps.empty()) {
        out("Nothing to do: all is as wanted.\n%s", leftAloneText(planning->plan).c_str());
        return RESULT_AS_WANTED;
    }
    const std::optional<Rehearsal> rehearsal = rehearsed(request, *planning);
    if (!rehearsal) return RESULT_NOT_WANTED;
    out("%s", planText(planning->plan, *rehearsal).c_str());
    return RESULT_AS_WANTED;
}

int doPlan(int argc, char** argv, _cmd_struct* row) {
    PlanRequest request;
    int result = 0;
    if (!readRequest({argc, argv, row}, planOptions, request, result)) return result;
    return guarded(plan, request);
}

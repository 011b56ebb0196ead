#include "Plan/twin.h"

#include "Plan/child.h"
#include "Report/look.h"

static constexpr int NO_TWIN = 125;

static std::string firstLine(const std::string& text) {
    return shown(text.substr(0, text.find('\n')));
}

static Json answerOf(const ChildEnd& end) {
    Json answer = Json::parse(end.output, nullptr, false);
    if (end.status == NO_TWIN || answer.is_discarded() || !in(answer, "after").is_object()) {
        const std::string why = firstLine(end.errors);
        throw TwinFailure{"the plan cannot be rehearsed, because no twin of these adapters can be made" +
                          (why.empty() ? "" : ": " + why)};
    }
    return answer;
}

// Carries out one command and waits until nothing goes on.
static Json rehearseOne(const std::string& ktsim, const Json& report, const std::string& command) {
    const HiddenFile from(report.dump());
    const HiddenFile script(command + "\n");
    return answerOf(
        runChild(ktsim, {"rehearse", "--from", from.name(), "--until", "idle", "--json", "--script", "-"}, script));
}

Rehearsal rehearse(const Json& report, const std::vector<PlannedStep>& steps) {
    const std::string ktsim = findProgram("ktsim");
    if (ktsim.empty()) {
        throw TwinFailure{"plans are rehearsed on simulated adapters, and ktsim is not there; install the package "
                          "ktraid-sim"};
    }
    Rehearsal rehearsal;
    rehearsal.after = report;
    // What goes on already ends before the first step that has to wait for it; the command only looks.
    if (!steps.empty() && steps.front().waits) rehearsal.after = rehearseOne(ktsim, report, "ktsetup ver")["after"];
    for (const PlannedStep& step : steps) {
        Json answer = rehearseOne(ktsim, rehearsal.after, commandText(step));
        const Json& commands = listIn(answer, "commands");
        if (commands.empty() || numberIn(commands.back(), "status") != 0U) {
            rehearsal.said = commands.empty() ? "" : textIn(commands.back(), "output");
            break;
        }
        rehearsal.seconds.push_back(numberIn(answer, "idleAfter").value_or(0));
        rehearsal.after = std::move(answer["after"]);
    }
    return rehearsal;
}

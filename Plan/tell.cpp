#include "Plan/tell.h"

#include "Report/look.h"

static std::string numbered(size_t number, const std::string& text) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 3 ? 3 - digits.size() : 0, ' ') + digits + ". " + text + "\n";
}

std::string obstaclesText(const Plan& plan, const std::string& file) {
    std::string text;
    for (const Reason& reason : plan.reasons) {
        text += shown(file) + ": " + shown(reason.place) + ": " + reason.text + "\n";
    }
    if (!plan.reasons.empty()) return text;
    for (const Unreachable& one : plan.unreachable) {
        text += "Not reachable: " + shown(one.place) + ": " + one.text + ".\n  Nearest: " + one.nearest + ".\n";
    }
    return text;
}

static std::string lastingText(const PlannedStep& step, KT_U64 seconds) {
    static const char* const names[] = {"", "initialization", "rebuild", "migration"};
    if (step.takes == Lasting::Nothing) return "";
    std::string text = "the " + std::string(names[static_cast<size_t>(step.takes)]) + " takes " + spanText(seconds);
    if (step.rate) text += " at " + std::to_string(*step.rate) + " % of the disks' speed";
    return text + "; ";
}

std::string leftAloneText(const Plan& plan) {
    std::string text;
    for (const std::string& note : plan.notes)
        text += "Note: " + note + ".\n";
    for (const std::string& one : plan.leftAlone)
        text += "Left alone, because the file does not mention it: " + one + ".\n";
    return text;
}

std::string planText(const Plan& plan, const Rehearsal& rehearsal) {
    std::string text;
    KT_U64 all = 0;
    for (size_t i = 0; i < plan.steps.size(); ++i) {
        const PlannedStep& step = plan.steps[i];
        text += numbered(i + 1, commandText(step));
        text += "     " + step.reason + "\n";
        text += "     " + lastingText(step, rehearsal.seconds[i]) + step.cost + "\n";
        if (step.waits) text += "     waits until what goes on before it has ended\n";
        all += rehearsal.seconds[i];
    }
    text += leftAloneText(plan);
    return text + "Rehearsed on a twin, one after the other until idle: " + std::to_string(plan.steps.size()) +
           (plan.steps.size() == 1 ? " command" : " commands") + ", as wanted after " + spanText(all) + ".\n";
}

std::string stepsText(const std::vector<PlannedStep>& steps, size_t first, size_t end) {
    std::string text;
    for (size_t i = first; i < end; ++i) {
        text += numbered(i + 1, commandText(steps[i]));
    }
    return text;
}

std::string differencesText(const Plan& plan) {
    std::string text = obstaclesText(plan, "wanted");
    for (const PlannedStep& step : plan.steps) {
        text += "  " + step.reason + " (" + commandText(step) + ")\n";
    }
    return text;
}

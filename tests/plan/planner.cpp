// Makes plans: of each line of standard input, an object with a report, what is wanted, "delete" and "adapter", all
// that the plan says, a line a thing, and an empty line behind it.
#include <iostream>

#include "Plan/plan.h"
#include "Report/losses.h"

// The command with why it is there, what it costs, and its key where that differs.
static std::string stepText(const PlannedStep& step) {
    static const char* const lasting[] = {"", "initialization", "rebuild", "migration"};
    const std::string command = commandText(step).substr(sizeof "ktsetup");
    std::string text = command + ": " + step.reason + ": " + step.cost;
    if (step.takes != Lasting::Nothing) text += std::string(", ") + lasting[static_cast<size_t>(step.takes)];
    if (step.rate) text += " at " + std::to_string(*step.rate) + " %";
    return text + (step.deletes ? ", deletes" : "") + (step.key == command ? "" : " [" + step.key + "]");
}

// The place without the adapter that nearly all are on.
static std::string placeText(const std::string& place) {
    return place.starts_with("adapters[0].") ? place.substr(sizeof "adapters[0]") : place;
}

static void tell(const Plan& plan, bool everything) {
    for (const Reason& reason : plan.reasons)
        std::cout << placeText(reason.place) << ": " << reason.text << '\n';
    for (const Unreachable& one : plan.unreachable) {
        const size_t leave = everything ? std::string::npos : one.nearest.find("; --delete");
        std::cout << "unreachable " << placeText(one.place) << ": " << one.text << " / " << one.nearest.substr(0, leave)
                  << (leave == std::string::npos ? "\n" : ", or delete\n");
    }
    for (const PlannedStep& step : plan.steps) {
        std::cout << (everything ? stepText(step) : commandText(step).substr(sizeof "ktsetup"))
                  << (step.waits ? " (waits)" : "") << '\n';
    }
    for (const std::string& note : plan.notes)
        std::cout << "note: " << note << '\n';
    for (const std::string& one : plan.leftAlone)
        std::cout << (everything ? "left alone: " + one + "\n" : "");
}

int main() {
    for (std::string line; std::getline(std::cin, line);) {
        const Json request = Json::parse(line);
        if (!request["before"].is_null())
            writeChanges(std::cout, takeLosses(changesBetween(request["before"], request["report"], false)));
        try {
            const PlanOptions options = {request["delete"], request["adapter"]};
            tell(makePlan(request["report"], wantedIn(request["wanted"]), options), request["everything"]);
        } catch (const IncompleteReport& failure) {
            std::cout << failure.message << '\n';
        }
        std::cout << std::endl;
    }
}

// What the parts of planning share: the adapter as it will be after the steps so far.
#pragma once

#include "Plan/levels.h"
#include "Plan/match.h"
#include "Plan/plan.h"

struct Planner {
    PresentAdapter now;
    const WantedAdapter& wanted;
    const PlanOptions& options;
    Plan& plan;
    Matching matching = {};
    size_t creations = 0;              // the number of steps before the first that creates something
    std::set<KT_U64> earlySpares = {}; // global spares that the adapter would take before that
};

// What a step is made from; `object` takes the place of the id at words[idAt] in its key.
struct StepDraft {
    std::vector<std::string> words;
    std::string reason;
    std::string cost;
    size_t idAt = 0; // 0: no id
    std::string object = {};
    Lasting takes = Lasting::Nothing;
    bool waits = false;
    bool deletes = false;
};
void addStep(Planner& planner, StepDraft draft);

void addUnreachable(Planner& planner, const std::string& place, const std::string& text, const std::string& nearest);

// Numbers with commas between them.
std::string joined(const std::vector<KT_U64>& numbers);
std::vector<KT_U64> presentDisks(const PresentLayout& layout);
bool isIn(const std::vector<KT_U64>& list, KT_U64 value);

// Why an array or a virtual disk outside arrays can only be made anew, and what can be had instead.
std::optional<Unreachable> whyAnew(const Planner& planner, const WantedArray& wanted, const PresentArray& there);
std::optional<Unreachable> whyAnew(const Planner& planner, const WantedVd& wanted, const PresentVd& there);
// The same for a virtual disk of an array that stays.
std::optional<Unreachable> whyAnewInArray(const WantedVd& wanted, const PresentVd& there, const PresentArray& array,
                                          const PresentLayout& target);

// What is to become of a layout, and the disks that are to come; whyAnew() has found nothing.
struct LayoutChange {
    PresentLayout target;
    std::vector<KT_U64> rebuildOn; // disks for the places that are empty
    bool migrates = false;
};
LayoutChange changeOf(const Planner& planner, const WantedLayout& wanted, const PresentLayout& there);

// The phases, in their order.
void planSettings(Planner& planner);
void planDeletions(Planner& planner);   // what stands in the way; also finds out what is unreachable
void planEarlySpares(Planner& planner); // finds out which spares can come before what is created
void planArrays(Planner& planner);      // names, rebuilds, new arrays, their virtual disks
void planVds(Planner& planner);         // virtual disks outside arrays
void planSpares(Planner& planner);
void planMigrations(Planner& planner); // and what can only come behind them
void planLateSpares(Planner& planner); // that only what has migrated has a use for; also those that nothing has

// Brings name, cache and read-ahead of a virtual disk to what is wanted.
void planVdSettings(Planner& planner, const WantedVd& wanted, const PresentVd& there);
// Creates what is missing of an array's virtual disks.
void planVdsIn(Planner& planner, const WantedArray& wanted, KT_U64 id);
// Options that a virtual disk is created with, and what they make of it.
void addCacheWords(const Planner& planner, const WantedVd& wanted, StepDraft& draft, PresentVd& vd);
// The lowest id that no virtual disk has.
KT_U64 freeVdId(const PresentAdapter& adapter);
// Whether the name can be typed; a reason when it cannot.
bool checkName(Planner& planner, const std::string& place, const std::string& name);

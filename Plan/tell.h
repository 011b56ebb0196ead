// A plan in words.
#pragma once

#include <string>

#include "Plan/twin.h"

// What keeps the plan from being one: the file's mistakes, or what cannot be reached. "" when nothing does.
std::string obstaclesText(const Plan& plan, const std::string& file);
// The steps with their reasons and costs, and what is left alone.
std::string planText(const Plan& plan, const Rehearsal& rehearsal);
std::string leftAloneText(const Plan& plan);
// The steps from `first` on, numbered, each in a line.
std::string stepsText(const std::vector<PlannedStep>& steps, size_t first, size_t end);
// What is different from what was wanted; plan leads from there to what is wanted.
std::string differencesText(const Plan& plan);

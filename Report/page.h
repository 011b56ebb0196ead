// The view to look at: one HTML file that carries its data, its script and its style, and loads nothing.
#pragma once

#include <string>
#include <vector>

#include "Report/load.h"

// Bytes of the largest file that a page takes. It shows hundreds of reports; one must not take the room of all.
inline constexpr size_t LARGEST_REPORT_OF_PAGE = size_t{64} << 20;

// What the page shows of a report, as compact JSON: the words that it has use for, of the types that they should be.
std::string machineOfPage(const Report& report);

// The page of machines (texts of machineOfPage) that also says what was left out: a sentence each that names the file.
std::string pageOf(const std::vector<std::string>& machines, const std::vector<std::string>& leftOut);

// Which disks are meant, and which are taken where a file only says what they are.
#pragma once

#include "Plan/match.h"

// Whether the adapter takes the one beside the other into an array, or as its spare.
bool isAlike(const PresentAdapter& there, const PresentDisk& one, const PresentDisk& other);

// Those that the file names by serial number, bay or id; one that is not there, or is not what the file says that it
// is, is a reason.
void findNamedDisks(const PresentAdapter& there, const WantedAdapter& wanted, Matching& matching);

// The others: those that do the duty already first, then the smallest free ones that fit. Too few are a reason.
void chooseOtherDisks(const PresentAdapter& there, const WantedAdapter& wanted, bool takeFileSystems,
                      Matching& matching);

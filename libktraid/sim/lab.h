/* Labs: descriptions of a set of adapters. */
#ifndef KTSIM_LAB_H
#define KTSIM_LAB_H

#include "store.h"

namespace sim {

/* Fills an empty state from the lab that a fresh machine starts with. `argument` is not used. */
void fillDefaultLab(Store& store, const void* argument);

} // namespace sim
#endif

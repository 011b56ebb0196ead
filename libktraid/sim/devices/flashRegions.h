// What the regions of the adapter's flash hold, and what of it runs. An image is there twice, as it was written last
// and as it was before, so that a boot can fall back on the earlier one.
#pragma once

#include "devices/flashImage.h"
#include "state/store.h"

namespace sim {

enum Generation : KT_U16 { LATEST = 0, EARLIER = 256 };

// Empty when there is none.
std::string imageInFlash(const Context& context, const ImageKind& kind, Generation generation);
// A new image. What it is written over is a copy that nobody runs.
void storeImage(const Context& context, const ImageKind& kind, const std::string& image);
// Both copies.
void eraseImages(const Context& context, const ImageKind& kind);
// Bits of the latest copy turn over; false when there is none.
bool spoilImage(const Context& context, const ImageKind& kind, ImageFault fault);

// Shows in the adapter's record whether an image, and all of them, are sound.
void showHealth(const Context& context, const ImageKind& kind, bool sound);

// The adapter boots: what is sound runs, and is shown. False when firmware or boot loader are not there, so that the
// adapter is good for nothing but being given one.
bool bootImages(const Context& context);
// What a rescan finds: images that were erased.
void examineFlash(const Context& context);

} // namespace sim

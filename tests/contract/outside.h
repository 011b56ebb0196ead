// What befalls adapters and no client of a library can do: disks fail and come and go, batteries run down. Its .cpp is
// all that knows whose adapters they are; the tests themselves know the C interface only.
#pragma once

#include "ktraid.h"

#include <functional>
#include <string>
#include <vector>

// All of these answer KT_OK, or why nothing happened.
template <class... Args>
using Deed = KT_U8 (*)(KT_U8 adapter, Args... args);

// The running test's state is made anew from a lab.
void makeState(const std::string& lab);

// Of a disk, by its id.
extern const Deed<KT_U16> failDisk, pullDisk, insertDisk, untripDisk;
KT_U8 replaceDisk(KT_U8 adapter, KT_U16 pd, KT_U64 sectors = 0); // 0: as many as the old one had
extern const Deed<KT_U16, const char*, KT_U32> ageDisk;          // as ktsim disk age
// Disks of the lab's first adapter are put in; `ids` are theirs here.
KT_U8 insertForeignDisks(KT_U8 adapter, const char* lab, const std::vector<KT_U16>& disks, std::vector<KT_U16>& ids);

// Sectors become bad, from an LBA on or wherever they would; scratch() answers how many did.
enum Flaw : KT_U8 { UNREADABLE = 1, LOST = 2, WRONG = 3 };
KT_U8 spoilSectors(KT_U8 adapter, KT_U16 pd, Flaw flaw, KT_U64 lba, KT_U32 count = 1);
KT_U32 scratch(KT_U8 adapter, KT_U16 pd, Flaw flaw, KT_U32 count);

// Of the battery: percent, hundredths of a degree Celsius, millivolts, seconds.
extern const Deed<> insertBattery, removeBattery, breakCharger;
extern const Deed<unsigned> setBatteryCharge;
extern const Deed<KT_S16> setBatteryTemperature;
extern const Deed<KT_U16> setBatteryVoltage;
extern const Deed<KT_U64> scheduleRelearn;

// Of an element of an enclosure, by the enclosure, the type and the number.
extern const Deed<KT_U16, KT_U8, KT_U8, const char*> setCondition;
extern const Deed<KT_U16, KT_U8, KT_U8, int> setReading;

// The machine is shut down and boots again, after what is done meanwhile.
KT_U8 reboot(const std::function<void()>& meanwhile = [] {});
// The copy of an image that was written last spoils in the adapter's flash.
enum ImagePart : KT_U8 { HEADER, DATA, BOTH };
KT_U8 damageImage(KT_U8 adapter, KT_U8 type, ImagePart part);

// A flash image with so many bytes of data, and a microcode file, as the adapters' maker would give them out.
std::string makeImage(KT_U8 type, KT_U8 major, KT_U16 subVendor, size_t size);
std::string makeMicrocode(const char* model, const char* version, size_t size);

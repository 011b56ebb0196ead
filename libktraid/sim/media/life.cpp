#include "media/life.h"

#include "media/blocks.h"
#include "state/due.h"

#include <algorithm>

namespace sim {

static const KT_U64 HOUR = 3600000;
static const KT_U64 DAY = 24 * HOUR;
static const KT_U64 FIRST_MADE = 19723 * DAY; // the first day of 2024
static const KT_U64 MOST_HOURS = 0xFFFFFF;
static const KT_U32 USUAL_TEMPERATURE = 29;
// What the machine room's day adds to it, hour by hour.
static const int DAILY_WARMTH[] = {-1, -1, -2, -2, -2, -2, -1, -1, 0, 0, 1, 1, 1, 2, 2, 2, 2, 2, 1, 1, 1, 0, 0, -1};
static const KT_U8 MOST_DAILY_WARMTH = 2;
static const KT_U8 WORKING_WARMTH = 4;
static const KT_U64 HOURS_TO_FILL = 40 * 24; // in which a machine writes as much as a disk holds
static const KT_U64 ENDURANCE = 3000;        // times that a solid state disk can be filled

static Digest ownNumbers(const _HD_Info& disk) {
    return sha256(std::string(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo));
}

static KT_U64 bornAt(const DiskAge& age, const Digest& own) {
    return age.born ? age.born : FIRST_MADE + (own.bytes[0] * 256U + own.bytes[1]) % 365 * DAY;
}

static KT_U32 firstCycles(const DiskAge& age, const Digest& own) {
    return age.born ? 1U : 12U + own.bytes[2] % 40;
}

DiskAge ageOf(const Context& context, KT_U16 pd) {
    return find<DiskAge>(context, pd).value_or(DiskAge{});
}

Life lifeOf(const Context& context, KT_U16 pd, const _HD_Info& disk) {
    const Digest own = ownNumbers(disk);
    Life life = {};
    life.age = ageOf(context, pd);
    const KT_U64 born = bornAt(life.age, own);
    const KT_U64 running = context.now > born ? std::min((context.now - born) / HOUR, MOST_HOURS) : 0;
    life.hours = running + life.age.hours;
    life.powerCycles = life.age.powerCycles + firstCycles(life.age, own);
    const KT_U64 usual = USUAL_TEMPERATURE + own.bytes[3] % 8;
    life.temperature = usual + life.age.warmth;
    life.hottest = usual + std::max(life.age.mostWarmth, life.age.warmth) + WORKING_WARMTH + MOST_DAILY_WARMTH;
    const KT_U64 size = std::max<KT_U64>(sectorsToKib(disk.Size, disk.BlockSize), 1);
    const KT_U64 writtenKib = life.age.writtenKib + size / HOURS_TO_FILL * running;
    life.written = 2 * writtenKib;
    life.wear = std::min<KT_U64>(life.age.wear + writtenKib / size * 100 / ENDURANCE, 100);
    return life;
}

int warmthAt(KT_U64 moment, bool busy) {
    const int daily = DAILY_WARMTH[moment / HOUR % std::size(DAILY_WARMTH)];
    return daily + (busy ? WORKING_WARMTH : 0);
}

void beginLife(const Context& context, KT_U16 pd) {
    DiskAge age = {};
    age.born = std::max<KT_U64>(context.now, 1);
    save(context, pd, age);
}

void powerOff(const Context& context, KT_U16 pd) {
    DiskAge age = ageOf(context, pd);
    if (age.pulled) return; // it had no power in its bay
    age.pulled = context.now;
    save(context, pd, age);
}

void powerOn(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    if (!disk) return;
    DiskAge age = ageOf(context, pd);
    if (age.pulled && age.pulled < context.now) {
        const Digest own = ownNumbers(*disk);
        // From now on it has a day of birth of its own; the cycles before stay what they were.
        age.powerCycles += firstCycles(age, own) - 1;
        age.born = bornAt(age, own) + (context.now - age.pulled);
    }
    const bool on = !isDown(context);
    age.pulled = on ? 0 : context.now;
    if (on) ++age.powerCycles;
    save(context, pd, age);
}

void moveLife(const Context& from, KT_U16 there, const Context& context, KT_U16 here) {
    if (const auto age = find<DiskAge>(from, there)) save(context, here, *age);
    powerOn(context, here);
}

void undoWear(const Context& context, KT_U16 pd) {
    const DiskAge before = ageOf(context, pd);
    DiskAge age = {};
    age.hours = before.hours;
    age.powerCycles = before.powerCycles;
    age.born = before.born;
    save(context, pd, age);
}

} // namespace sim

#include "devices/elementConditions.h"

#include <algorithm>

namespace sim {

static const int FAN_RPM = 5200;
static const int RPM_PER_SPEED_CODE = 2000; // up to the seventh, the highest; 0 = it stands still
static const int HIGHEST_SPEED_CODE = 7;
static const int CELSIUS_OFFSET = 20;

static const ElementKind ELEMENT_KINDS[] = {
    {KT_SES_DEVICE, "dev", "Device"},       {KT_SES_ARRAY_DEVICE, "arydev", "Slot"},
    {KT_SES_POWER_SUPPLY, "pow", "PSU"},    {KT_SES_COOLING, "fan", "Fan"},
    {KT_SES_TEMPERATURE, "tpr", "Temp"},    {KT_SES_DOOR_LOCK, "dor", "Door"},
    {KT_SES_ALARM, "alm", "Audible alarm"}, {KT_SES_DISPLAY, "dpl", "Display"},
    {KT_SES_VOLTAGE, "vlt", "Voltage"},
};

std::span<const ElementKind> elementKinds() {
    return ELEMENT_KINDS;
}

const ElementKind* elementKind(KT_U8 type) {
    for (const ElementKind& kind : ELEMENT_KINDS)
        if (kind.type == type) return &kind;
    return nullptr;
}

const ElementKind* elementKindNamed(const std::string& word) {
    for (const ElementKind& kind : ELEMENT_KINDS)
        if (word == kind.word) return &kind;
    return nullptr;
}

std::vector<std::string> elementWords() {
    std::vector<std::string> words;
    for (const ElementKind& kind : ELEMENT_KINDS)
        words.emplace_back(kind.word);
    return words;
}

static constexpr KT_U8 speedCode(int rpm) {
    return static_cast<KT_U8>(std::min((rpm + RPM_PER_SPEED_CODE - 1) / RPM_PER_SPEED_CODE, HIGHEST_SPEED_CODE));
}

static const Condition CONDITIONS[] = {
    {"ok", EVT_ENVIRONMENT_SUPPLY_OK, KT_SES_POWER_SUPPLY, {SES_OK, 0, 0, HOT_SWAP | REQUESTED_ON}, SEV_INFO},
    {"ac-fail",
     EVT_ENVIRONMENT_SUPPLY_ALERT,
     KT_SES_POWER_SUPPLY,
     {SES_CRITICAL, 0, 0, HOT_SWAP | 0x40 | REQUESTED_ON | 0x02},
     SEV_MAJOR},
    {"dc-fail",
     EVT_ENVIRONMENT_SUPPLY_ALERT,
     KT_SES_POWER_SUPPLY,
     {SES_CRITICAL, 0, 0, HOT_SWAP | 0x40 | REQUESTED_ON | 0x01},
     SEV_MAJOR},
    {"overheated",
     EVT_ENVIRONMENT_SUPPLY_ALERT,
     KT_SES_POWER_SUPPLY,
     {SES_CRITICAL, 0, 0, HOT_SWAP | REQUESTED_ON | 0x08},
     SEV_MAJOR},
    {"off", EVT_ENVIRONMENT_SUPPLY_ALERT, KT_SES_POWER_SUPPLY, {SES_NONCRITICAL, 0, 0, HOT_SWAP | 0x10}, SEV_WARNING},
    {"missing", EVT_ENVIRONMENT_SUPPLY_ALERT, KT_SES_POWER_SUPPLY, {SES_NOT_INSTALLED, 0, 0, HOT_SWAP}, SEV_WARNING},
    {"ok",
     EVT_ENVIRONMENT_FAN_OK,
     KT_SES_COOLING,
     {SES_OK, FAN_RPM / 10 >> 8, FAN_RPM / 10 & 0xFF, HOT_SWAP | REQUESTED_ON | speedCode(FAN_RPM)},
     SEV_INFO},
    {"failed",
     EVT_ENVIRONMENT_FAN_DEFECTIVE,
     KT_SES_COOLING,
     {SES_CRITICAL, 0, 0, HOT_SWAP | 0x40 | REQUESTED_ON},
     SEV_MAJOR},
    {"off", EVT_ENVIRONMENT_FAN_DEFECTIVE, KT_SES_COOLING, {SES_NONCRITICAL, 0, 0, HOT_SWAP | 0x10}, SEV_WARNING},
    {"missing", EVT_ENVIRONMENT_FAN_ABSENT, KT_SES_COOLING, {SES_NOT_INSTALLED, 0, 0, HOT_SWAP}, SEV_WARNING},
    {"ok", EVT_ENVIRONMENT_TEMPERATURE_OK, KT_SES_TEMPERATURE, {SES_OK, 0, 31 + CELSIUS_OFFSET, 0}, SEV_INFO},
    {"failed", NO_EVENT, KT_SES_TEMPERATURE, {SES_CRITICAL, 0x40, 0, 0}, SEV_MAJOR},
    {"ok", EVT_ENVIRONMENT_CLOSED, KT_SES_DOOR_LOCK, {SES_OK, 0, 0, 0}, SEV_INFO},
    {"open", EVT_ENVIRONMENT_OPENED, KT_SES_DOOR_LOCK, {SES_NONCRITICAL, 0, 0, DOOR_OPEN | DOOR_UNLOCKED}, SEV_WARNING},
    {"unlocked", EVT_ENVIRONMENT_CLOSED, KT_SES_DOOR_LOCK, {SES_OK, 0, 0, DOOR_UNLOCKED}, SEV_INFO},
    {"failed", NO_EVENT, KT_SES_DOOR_LOCK, {SES_CRITICAL, 0x40, 0, 0}, SEV_MAJOR},
    {"ok", NO_EVENT, KT_SES_ALARM, {SES_OK, 0, 0, 0}, SEV_INFO},
    {"sounding", NO_EVENT, KT_SES_ALARM, {SES_OK, 0, 0, TONE_CRITICAL}, SEV_INFO},
    {"muted", EVT_ENVIRONMENT_MUTE_PRESSED, KT_SES_ALARM, {SES_OK, 0, 0, ALARM_MUTED | TONE_CRITICAL}, SEV_INFO},
    {"failed", NO_EVENT, KT_SES_ALARM, {SES_CRITICAL, 0x40, 0, 0}, SEV_MAJOR},
    {"ok", NO_EVENT, KT_SES_DISPLAY, {SES_OK, 0x01, 'A', '1'}, SEV_INFO},
    {"failed", NO_EVENT, KT_SES_DISPLAY, {SES_CRITICAL, 0x41, 0, 0}, SEV_MAJOR},
    {"ok", NO_EVENT, KT_SES_VOLTAGE, {SES_OK, 0, 1200 >> 8, 1200 & 0xFF}, SEV_INFO},
    {"failed", NO_EVENT, KT_SES_VOLTAGE, {SES_CRITICAL, 0x40, 0, 0}, SEV_MAJOR},
    {"ok", NO_EVENT, KT_SES_ARRAY_DEVICE, {SES_OK, 0, 0, 0}, SEV_INFO},
    {"ok", NO_EVENT, KT_SES_DEVICE, {SES_OK, 0, 0, 0}, SEV_INFO},
    {"unknown", NO_EVENT, EVERY_TYPE, {6, 0, 0, 0}, SEV_WARNING},
    {"missing", NO_EVENT, EVERY_TYPE, {SES_NOT_INSTALLED, 0, 0, 0}, SEV_WARNING},
};

const Condition* conditionNamed(KT_U8 type, const std::string& word) {
    for (const Condition& condition : CONDITIONS)
        if ((condition.type == type || condition.type == EVERY_TYPE) && word == condition.word) return &condition;
    return nullptr;
}

bool isSlot(KT_U8 type) {
    return type == KT_SES_ARRAY_DEVICE || type == KT_SES_DEVICE;
}

std::vector<std::string> conditionWords(KT_U8 type) {
    std::vector<std::string> words;
    for (const Condition& condition : CONDITIONS) {
        const bool fits = condition.type == type || (condition.type == EVERY_TYPE && !isSlot(type));
        const bool known = std::find(words.begin(), words.end(), condition.word) != words.end();
        if (fits && !known) words.emplace_back(condition.word);
    }
    return words;
}

// Thresholds of the sensors: the first line that holds says what a reading means.
static const Reading READINGS[] = {
    {[](int value, int) { return value >= 65; }, EVT_ENVIRONMENT_TOO_HOT, KT_SES_TEMPERATURE, SES_CRITICAL, 0x08,
     SEV_CRITICAL},
    {[](int value, int) { return value >= 55; }, EVT_ENVIRONMENT_HOT, KT_SES_TEMPERATURE, SES_NONCRITICAL, 0x04,
     SEV_WARNING},
    {[](int value, int) { return value <= 0; }, NO_EVENT, KT_SES_TEMPERATURE, SES_CRITICAL, 0x02, SEV_MAJOR},
    {[](int value, int) { return value <= 5; }, NO_EVENT, KT_SES_TEMPERATURE, SES_NONCRITICAL, 0x01, SEV_WARNING},
    {[](int, int) { return true; }, EVT_ENVIRONMENT_TEMPERATURE_OK, KT_SES_TEMPERATURE, SES_OK, 0, SEV_INFO},
    {[](int value, int nominal) { return value > nominal * 110 / 100; }, EVT_ENVIRONMENT_SUPPLY_ALERT, KT_SES_VOLTAGE,
     SES_CRITICAL, 0x02, SEV_MAJOR},
    {[](int value, int nominal) { return value < nominal * 90 / 100; }, EVT_ENVIRONMENT_SUPPLY_ALERT, KT_SES_VOLTAGE,
     SES_CRITICAL, 0x01, SEV_MAJOR},
    {[](int value, int nominal) { return value > nominal * 105 / 100; }, EVT_ENVIRONMENT_SUPPLY_ALERT, KT_SES_VOLTAGE,
     SES_NONCRITICAL, 0x08, SEV_WARNING},
    {[](int value, int nominal) { return value < nominal * 95 / 100; }, EVT_ENVIRONMENT_SUPPLY_ALERT, KT_SES_VOLTAGE,
     SES_NONCRITICAL, 0x04, SEV_WARNING},
    {[](int, int) { return true; }, EVT_ENVIRONMENT_SUPPLY_OK, KT_SES_VOLTAGE, SES_OK, 0, SEV_INFO},
    {[](int value, int) { return value < 1000; }, EVT_ENVIRONMENT_FAN_DEFECTIVE, KT_SES_COOLING, SES_CRITICAL, 0x40,
     SEV_MAJOR},
    {[](int, int) { return true; }, EVT_ENVIRONMENT_FAN_OK, KT_SES_COOLING, SES_OK, 0, SEV_INFO},
};

const Reading* readingOf(KT_U8 type, int value, int nominal) {
    for (const Reading& reading : READINGS)
        if (reading.type == type && reading.holds(value, nominal)) return &reading;
    return nullptr;
}

void putReading(KT_U8 type, const Reading& reading, int value, KT_U8 (&status)[4]) {
    status[0] = reading.code;
    if (type == KT_SES_TEMPERATURE) {
        status[2] = static_cast<KT_U8>(std::clamp(value + CELSIUS_OFFSET, 1, 255));
        status[3] = reading.flag;
    } else if (type == KT_SES_VOLTAGE) {
        status[1] = reading.flag;
        status[2] = static_cast<KT_U8>(static_cast<unsigned>(value) >> 8);
        status[3] = static_cast<KT_U8>(value & 0xFF);
    } else {
        const int tens = std::clamp(value / 10, 0, 0x7FF);
        status[1] = static_cast<KT_U8>(tens >> 8);
        status[2] = static_cast<KT_U8>(tens & 0xFF);
        status[3] = static_cast<KT_U8>(HOT_SWAP | REQUESTED_ON | reading.flag | speedCode(tens * 10));
    }
}

// The value that putReading() wrote.
static int valueIn(KT_U8 type, const KT_U8 (&status)[4]) {
    if (type == KT_SES_TEMPERATURE) return status[2] - CELSIUS_OFFSET;
    if (type == KT_SES_VOLTAGE) return status[2] << 8 | status[3];
    return ((status[1] & 7) << 8 | status[2]) * 10;
}

Alert alertOf(KT_U8 type, const KT_U8 (&status)[4], int nominal) {
    const Alert none = {NO_EVENT, SEV_INFO};
    if ((status[0] & SES_CODE_MASK) == SES_OK) return none;
    const auto* known = std::find_if(std::begin(CONDITIONS), std::end(CONDITIONS), [&](const Condition& condition) {
        return condition.type == type && std::equal(std::begin(status), std::end(status), condition.status);
    });
    if (known != std::end(CONDITIONS)) return {known->event, known->severity};
    const Reading* reading = readingOf(type, valueIn(type, status), nominal);
    return reading && reading->code == (status[0] & SES_CODE_MASK) ? Alert{reading->event, reading->severity} : none;
}

} // namespace sim

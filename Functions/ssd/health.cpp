#include "Functions/ssd/health.h"

#include <cstdio>

#include "Public/common.h"

namespace {
enum class Unit : KT_U8 { Percent, Count, Hours, Celsius, Sectors };

// Makers do not agree on all numbers; these are the ones that most of them use.
struct AttributeRow {
    KT_U8 id;
    Unit unit;
    char label[24];
};
const AttributeRow attributes[] = {
    {5, Unit::Count, "reallocated sectors:"}, {9, Unit::Hours, "power on:"},
    {12, Unit::Count, "power cycles:"},       {170, Unit::Percent, "spare blocks left:"},
    {171, Unit::Count, "program failures:"},  {172, Unit::Count, "erase failures:"},
    {173, Unit::Percent, "wear levelling:"},  {177, Unit::Percent, "wear levelling:"},
    {180, Unit::Count, "spare blocks:"},      {187, Unit::Count, "uncorrectable errors:"},
    {190, Unit::Celsius, "temperature:"},     {194, Unit::Celsius, "temperature:"},
    {197, Unit::Count, "pending sectors:"},   {198, Unit::Count, "uncorrectable sectors:"},
    {199, Unit::Count, "CRC errors:"},        {202, Unit::Percent, "life left:"},
    {231, Unit::Percent, "life left:"},       {232, Unit::Percent, "spare blocks left:"},
    {233, Unit::Percent, "life left:"},       {241, Unit::Sectors, "bytes written:"},
    {242, Unit::Sectors, "bytes read:"},
};
} // namespace

void readSmartPage(KT_U16 pd, SmartPage& page) {
    page = {};
    page.status = KT_SSD_SmartReadData(gCurrentAdapter, pd, &page.data);
    KT_U8 sum = 0;
    for (size_t i = 0; i < sizeof page.data; ++i) {
        sum = static_cast<KT_U8>(sum + reinterpret_cast<const KT_U8*>(&page.data)[i]);
    }
    page.sound = sum == 0;
}

static KT_U64 rawOf(const _SSD_Smart_Attribute& attribute) {
    KT_U64 raw = 0;
    for (int i = 5; i >= 0; --i) {
        raw = raw << 8 | attribute.Raw[i];
    }
    return raw;
}

// One decimal of the largest unit of a thousand that the bytes reach.
static ValueText bytesText(KT_U64 bytes) {
    static const char units[][4] = {"kB", "MB", "GB", "TB", "PB"};
    size_t unit = 0;
    KT_U64 tenths = bytes / 100;
    for (; tenths >= 10000 && unit + 1 < sizeof units / sizeof units[0]; ++unit) {
        tenths /= 1000;
    }
    ValueText value;
    snprintf(value.text, sizeof value.text, "%llu.%llu %s", static_cast<unsigned long long>(tenths / 10),
             static_cast<unsigned long long>(tenths % 10), units[unit]);
    return value;
}

static ValueText valueText(const _SSD_Smart_Attribute& attribute, Unit unit) {
    // Some drives keep minutes, or the lowest and highest temperature, in the upper bytes.
    static constexpr KT_U64 HOURS_BITS = 0xFFFFFFFF, TEMPERATURE_BITS = 0xFF;
    const auto raw = static_cast<unsigned long long>(rawOf(attribute));
    ValueText value;
    switch (unit) {
    case Unit::Percent:
        snprintf(value.text, sizeof value.text, attribute.Current <= 100 ? "%d %%" : "%d", attribute.Current);
        break;
    case Unit::Hours:
        snprintf(value.text, sizeof value.text, "%llu h", raw & HOURS_BITS);
        break;
    case Unit::Celsius:
        snprintf(value.text, sizeof value.text, "%llu C", raw & TEMPERATURE_BITS);
        break;
    case Unit::Sectors:
        return bytesText(rawOf(attribute) * 512);
    case Unit::Count:
        snprintf(value.text, sizeof value.text, "%llu", raw);
        break;
    }
    return value;
}

static const AttributeRow* rowOf(KT_U8 id) {
    for (const AttributeRow& row : attributes) {
        if (row.id == id) return &row;
    }
    return nullptr;
}

void printHealth(const _SSD_Smart_Data& data) {
    static constexpr int WIDTH = 24;
    for (const _SSD_Smart_Attribute& attribute : data.Attributes) {
        if (attribute.Id == 0) continue;
        const AttributeRow* row = rowOf(attribute.Id);
        if (row != nullptr) {
            printStr(WIDTH, row->label, valueText(attribute, row->unit).text);
        } else {
            char label[24];
            snprintf(label, sizeof label, "attribute %d:", attribute.Id);
            printStr(WIDTH, label, valueText(attribute, Unit::Count).text);
        }
    }
}

// The value of the first of these attributes that the disk has.
template <size_t N>
static ValueText column(const _SSD_Smart_Data& data, const KT_U8 (&wanted)[N]) {
    for (const KT_U8 id : wanted) {
        for (const _SSD_Smart_Attribute& attribute : data.Attributes) {
            if (attribute.Id == id) return valueText(attribute, rowOf(id)->unit);
        }
    }
    return {"N/A"};
}

HealthColumns healthColumns(const _SSD_Smart_Data& data) {
    static constexpr KT_U8 life[] = {231, 202, 233, 177, 173}, written[] = {241}, hours[] = {9},
                           temperature[] = {194, 190};
    return {column(data, life), column(data, written), column(data, hours), column(data, temperature)};
}

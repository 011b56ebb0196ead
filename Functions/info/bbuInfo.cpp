#include "Functions/info/info.h"
#include "Public/errorMsg.h"

void BBU_PrintStatus(const _BBU_Info* battery) {
    if (battery->status & KT_BBU_CHARGING) {
        out("charging and %d minutes to full,", battery->minutesToFull);
    } else if (battery->status & KT_BBU_DISCHARGING) {
        out("discharging and %d minutes to empty,", battery->minutesToEmpty);
    } else {
        out("Unknow");
    }
}

static void printSensors(KT_U8 sensors) {
    bool any = (sensors & (KT_SENSOR_TEMPERATURE | KT_SENSOR_VOLTAGE | KT_SENSOR_CAPACITY)) != 0;
    out("feature supported (supported sensor): %s%s%s%s\n", sensors & KT_SENSOR_TEMPERATURE ? "temperature " : "",
        sensors & KT_SENSOR_VOLTAGE ? "voltage " : "", sensors & KT_SENSOR_CAPACITY ? "Ecapacity" : "",
        any ? "" : "N/A");
}

static void printBattery(const _BBU_Info* battery) {
    out("status: ");
    BBU_PrintStatus(battery);
    out("recharge cycle %d\n", battery->rechargeCycle);
    printSensors(battery->sensorSupport);
    if (battery->sensorSupport & KT_SENSOR_TEMPERATURE) {
        out("current temperature: %.2f C\n", battery->temperature / 100.0);
        out("temperature range: %d - %d degrees centigrade\n", battery->tempLow, battery->tempHigh);
    }
    if (battery->sensorSupport & KT_SENSOR_VOLTAGE) {
        out("current voltage: %.2f V\n", battery->voltage / 1000.0);
        out("voltage range: %dmV - %dmV\n", battery->voltLow, battery->voltHigh);
    }
    if (battery->sensorSupport & KT_SENSOR_CAPACITY) {
        out("current capacity: %.2f watt-hours\n", battery->capacity / 100.0);
        out("max capacity: %.2f watt-hours\n", battery->maxCapacity / 100.0);
    }
    out("battery power remaining: %d%%\n", battery->percentage);
}

KT_U8 getBBUInfo() {
    _BBU_Info battery = {};
    KT_U8 status = KT_BBU_GetInfo(gCurrentAdapter, &battery);
    if (status != KT_OK) {
        out("Unable to get info of BBU. (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    if (battery.status == 0) {
        out("No BBU is found.\n");
        return KT_OK;
    }
    printBattery(&battery);
    return KT_OK;
}

// The parts of the document, each made in a file of its own.
#pragma once

#include "Report/document.h"
#include "Report/fields.h"

Json adapterOf(const AdapterReading& adapter, const ReadOptions& options);
// Disks without what addDetails adds: the table of attributes and the records.
Json diskOf(const AdapterReading& adapter, KT_U16 id, const DiskReading& disk, const std::vector<KT_U16>& blocks);
void addDetails(Json& object, const DiskReading& disk, const ReadOptions& options);
void addDisks(Json& object, const AdapterReading& adapter);
void addVolumes(Json& object, const AdapterReading& adapter, const ReadOptions& options);
void addParts(Json& object, const AdapterReading& adapter, const ReadOptions& options);
void addEvents(Json& object, const AdapterReading& adapter);
// One event in the words of the log.
Json eventOf(const _Event& event);

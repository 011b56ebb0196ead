// The JSON Schema of reports (docs/report.schema.json), as the build found it.
#pragma once

extern const char REPORT_SCHEMA[];

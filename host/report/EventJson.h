#pragma once

#include "host/report/JsonWriter.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx::host {

/// {"source", "name", "type", "variables": {...}}
void writeEvents(JsonWriter& json, const Array<TestRunEventImp>& events);

}  // namespace vrx::host

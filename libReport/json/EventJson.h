#pragma once

#include "libReport/json/JsonWriter.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

/// {"source", "name", "type", "variables": {...}}
void writeEvents(JsonWriter& json, const Array<TestRunEventImp>& events);

}  // namespace vrx

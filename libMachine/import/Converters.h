#pragma once

#include <string>
#include <string_view>

#include "libMachine/import/RecordingStart.h"
#include "libMachine/import/mending/DamageList.h"
#include "libMachine/record/Recording.h"

/// Recordings that other programs made, as devices: with the types, locators, properties and units that `collect` would
/// have given the same machine, as far as the recording tells. What is damaged is left out or mended, and counted.
///
/// Each format has a function that recognises it and one that converts it; FormatTable.cpp has them all in one table.
/// A converter adds its devices, the root first, to an empty recording. It adds nothing when the text holds no machine
/// at all. The text is UTF-8 without control characters other than tab and line ends (see TextMending).
namespace vrx {

bool isLshwXml(const RecordingStart& start);
bool isLshwJson(const RecordingStart& start);
bool isDmidecode(const RecordingStart& start);
bool isHwlocXml(const RecordingStart& start);
bool isRedfish(const RecordingStart& start);

/// The output of `lshw -xml`: one root node, or a list of them.
void convertLshwXml(std::string_view text, Recording& recording, DamageList& damage);

/// The output of `lshw -json`: one object, or an array of them, or several objects in a row.
void convertLshwJson(std::string_view text, Recording& recording, DamageList& damage);

/// The output of `dmidecode` without options.
void convertDmidecode(std::string_view text, Recording& recording, DamageList& damage);

/// What `lstopo --of xml` and hwloc_topology_export_xml write.
void convertHwlocXml(std::string_view text, Recording& recording, DamageList& damage);

/// The resources of a Redfish service: one JSON document of them by path, a tar archive, or a folder of them. Any
/// bytes: each resource is mended by itself.
void convertRedfish(std::string_view bytes, Recording& recording, DamageList& damage);
void convertRedfishFolder(const std::string& folder, Recording& recording, DamageList& damage);

}  // namespace vrx

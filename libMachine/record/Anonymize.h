#pragma once

namespace vrx {

class Recording;

/// Replaces what identifies one piece of hardware or its owner by pseudonyms (Pseudonym.h): serial numbers, asset tags,
/// UUIDs, WWNs, hardware addresses and host names, as values of properties and wherever they stand in names, locators
/// and other texts. Vendors' placeholders stay. Equal stays equal, within a recording and between recordings.
void anonymize(Recording& recording);

}  // namespace vrx

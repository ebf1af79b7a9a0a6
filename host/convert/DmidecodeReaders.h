#pragma once

#include "host/collect/SmbiosFacts.h"
#include "host/convert/DmidecodeValues.h"

/// Readers of single structures of the text, by what they tell of; dmidecodeFacts calls them. Each adds to the facts.
namespace vrx::host {

// DmidecodeMachineReader.cpp
void readBios(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readSystem(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readBoard(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readChassis(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readProcessor(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readCache(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);

// DmidecodeMemoryReader.cpp
void readMemoryArray(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readMemoryModule(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);

// DmidecodePeripheralReader.cpp
void readExpansionSlot(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readOnboardDevice(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readPowerSupply(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readPortableBattery(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readCoolingDevice(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readManagementController(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);
void readTrustedPlatform(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts);

}  // namespace vrx::host

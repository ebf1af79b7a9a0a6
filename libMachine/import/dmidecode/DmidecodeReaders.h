#pragma once

#include "libMachine/import/dmidecode/DmidecodeValues.h"
#include "libMachine/smbios/SmbiosFacts.h"

/// Readers of single structures of the text, by what they tell of; dmidecodeFacts calls them. Each adds to the facts.
namespace vrx {

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

}  // namespace vrx

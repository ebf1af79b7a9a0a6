#pragma once

#include "libMachine/smbios/SmbiosFacts.h"
#include "libMachine/smbios/SmbiosTable.h"

/// Readers of single structures of a table, by what they tell of; readSmbiosFacts calls them. Each adds to the facts.
namespace vrx {

SmbiosPlace placeOf(const SmbiosStructure& structure);

// SmbiosMachineReader.cpp
void readBios(const SmbiosStructure& structure, SmbiosFacts& facts);
void readSystem(const SmbiosStructure& structure, SmbiosFacts& facts);
void readBoard(const SmbiosStructure& structure, SmbiosFacts& facts);
void readChassis(const SmbiosStructure& structure, SmbiosFacts& facts);
void readProcessor(const SmbiosStructure& structure, SmbiosFacts& facts);
void readCache(const SmbiosStructure& structure, SmbiosFacts& facts);

// SmbiosMemoryReader.cpp
void readMemoryArray(const SmbiosStructure& structure, SmbiosFacts& facts);
void readMemoryModule(const SmbiosStructure& structure, SmbiosFacts& facts);

// SmbiosPeripheralReader.cpp
void readExpansionSlot(const SmbiosStructure& structure, SmbiosFacts& facts);
void readOnboardDevice(const SmbiosStructure& structure, SmbiosFacts& facts);
void readPowerSupply(const SmbiosStructure& structure, SmbiosFacts& facts);
void readPortableBattery(const SmbiosStructure& structure, SmbiosFacts& facts);
void readCoolingDevice(const SmbiosStructure& structure, SmbiosFacts& facts);
void readManagementController(const SmbiosStructure& structure, SmbiosFacts& facts);
void readTrustedPlatform(const SmbiosStructure& structure, SmbiosFacts& facts);

}  // namespace vrx

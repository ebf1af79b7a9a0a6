#pragma once

#include "libMachine/record/Recording.h"
#include "libMachine/smbios/SmbiosFacts.h"

/// Devices that firmware tells of beside board, processors and memory, whoever read the facts. Requires: the recording
/// has its root.
namespace vrx {

/// Gives PCI devices that are in the recording the name of the expansion slot that they sit in; every other slot, empty
/// or in use, becomes a Slot device `slot:LABEL`. What firmware lists at a device of the board is no slot of that.
void addExpansionSlots(Recording& recording, const SmbiosFacts& facts);

/// Gives PCI devices that are in the recording and belong to the board the name that they have there.
void labelOnboardDevices(Recording& recording, const SmbiosFacts& facts);

/// Adds the devices of the board that are switched on, for want of a better source: those on the PCI bus, or, where
/// older firmware tells no addresses, `onboard:LABEL`.
void addOnboardDevices(Recording& recording, const SmbiosFacts& facts);

/// Power supplies `psu:LABEL`; a bay without one becomes a Slot.
void addPowerSupplies(Recording& recording, const SmbiosFacts& facts);

/// Batteries, cooling devices, the management controller and the trusted platform module.
void addBatteries(Recording& recording, const SmbiosFacts& facts);
void addCoolingDevices(Recording& recording, const SmbiosFacts& facts);
void addManagementController(Recording& recording, const SmbiosFacts& facts);
void addTrustedPlatform(Recording& recording, const SmbiosFacts& facts);

}  // namespace vrx

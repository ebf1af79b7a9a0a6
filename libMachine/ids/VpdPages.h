#pragma once

#include <string>
#include <string_view>

/// The "vital product data" pages that disks answer with, as the kernel keeps them (device/vpd_pg80 and so on). Pages
/// that are too short or are another page give nothing.
namespace vrx {

/// Page 0x80: the serial number.
std::string vpdSerialNumber(std::string_view page);

/// What a disk behind an ATA translation says of itself, uncut; the translation has room for 16 letters of the model.
struct AtaIdentity {
    std::string model;
    std::string serialNumber;
    std::string firmwareVersion;
};

/// Page 0x89: the answer to IDENTIFY DEVICE.
AtaIdentity vpdAtaIdentity(std::string_view page);

/// Page 0xB1: revolutions per minute; 0 when the medium does not rotate or the disk does not say.
unsigned vpdRotationRate(std::string_view page);

}  // namespace vrx

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/libMachine/support/ConvertedMachine.h"

namespace vrx {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::string bytesOf(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::string server() { return bytesOf(VRX_TEST_DATA "/data/convert/server.redfish.json"); }

/// A service's resources as files of a folder that goes away with it.
class MirrorFolder {
public:
    MirrorFolder() : m_path(fs::temp_directory_path() / ("vrx-redfish-" + std::to_string(getpid()))) {
        fs::remove_all(m_path);
        fs::create_directories(m_path);
    }
    MirrorFolder(const MirrorFolder&) = delete;
    MirrorFolder& operator=(const MirrorFolder&) = delete;
    ~MirrorFolder() { fs::remove_all(m_path); }

    void put(const std::string& name, const std::string& text) const {
        fs::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << text;
    }

    /// Every resource of a document of resources by path, in a file whose name is made of its path.
    template <typename NameOf>
    void putAll(const std::string& document, NameOf nameOf) const {
        const boost::json::value resources = boost::json::parse(document);
        for (const auto& [path, resource] : resources.get_object()) {
            put(nameOf(std::string(path).substr(1)), boost::json::serialize(resource));
        }
    }

    std::string archive() const {
        const std::string file = m_path.string() + ".tar";
        const std::string command = "tar -C '" + m_path.string() + "' -cf '" + file + "' .";
        EXPECT_EQ(std::system(command.c_str()), 0);
        const std::string bytes = bytesOf(file);
        fs::remove(file);
        return bytes;
    }

    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

ConvertedMachine convertedFolder(const MirrorFolder& mirror) {
    return {RecordingFormat::Redfish, mirror.path().string()};
}

TEST(RedfishTest, givesDevicesAndSlots) {
    const ConvertedMachine machine(server());
    const std::pair<std::string, std::string> devices[] = {
        {"system",
         "System name=Example Works Rack 7 os= Vendor=Example Works Model=Rack 7 SerialNumber=EW-0007 "
         "UUID=a0b1c2d3-0001-0002-0003-000000000042 Health=OK(Volatile)"},
        {"bios", "BIOS name=BIOS os= above=system FirmwareVersion=2.14"},
        {"cpu:0", "Slot name=Processor socket os= above=system Usage=Absent"},
        {"cpu:1",
         "Processor name=GenuineIntel Example CPU os= above=system Vendor=GenuineIntel Family=6 ModelNumber=85 "
         "Slot=CPU 2 Cores=8 Threads=16 SocketMaxClock=3700 MHz Model=Example CPU Health=OK(Volatile)"},
        {"memory", "Memory name=Memory os=/proc/meminfo above=system InstalledSize=32 GB"},
        {"dimm:A1",
         "MemoryModule name=Example Memory EM-32G os= above=memory Slot=A1 Vendor=Example Memory PartNumber=EM-32G "
         "SerialNumber=M0001 Size=32 GB MemoryType=DDR4 Buffering=Registered Speed=3200 MT/s "
         "ConfiguredSpeed=2933 MT/s DataWidth=64 bit TotalWidth=72 bit Ranks=2 Health=OK(Volatile)"},
        {"dimm:A3", "Slot name=Memory slot os= above=memory Slot=A3 Usage=Disabled Health=Critical(Volatile)"},
        {"storage:R1", "RaidController name=Example RAID 9 os= above=system Model=Example RAID 9 FirmwareVersion=51.1"},
        {"storage:R1/drive:Bay0",
         "HardDiskDrive name=Example Disks ED-1200 os= above=storage:R1 FirmwareVersion=E004 "
         "Size=1.0916152819991112 TB Transport=SAS RotationRate=10500 RPM Vendor=Example Disks Model=ED-1200 "
         "SerialNumber=D0001 "
         "Health=OK(Volatile)"},
        {"storage:R1/drive:Bay1",
         "NvmeDrive name=Example Flash os= above=storage:R1 Size=894.2532577514648 GB Transport=NVMe Model=Example "
         "Flash "
         "SerialNumber=D0002 Health=Warning(Volatile)"},
        {"storage:R1/volume:V1", "Volume name=System os= above=storage:R1 Size=1.0916152819991112 TB RaidLevel=RAID1"},
        {"net:0",
         "Ethernet name=Network interface os= above=system Address=02:00:00:00:00:0a LinkState=up(Volatile) "
         "Speed=25000 Mbit/s(Volatile) Health=OK(Volatile)"},
        {"pcie:Slot4",
         "PciDevice name=Example Graphics EG-9 os= above=system MaxLinkSpeed=16 GT/s MaxLinkWidth=16 "
         "LinkSpeed=8 GT/s(Volatile) LinkWidth=8 Vendor=Example Graphics Model=EG-9 VendorId=10de DeviceId=20b5 "
         "ClassCode=030200"},
        {"tpm:0",
         "TrustedPlatformModule name=Trusted platform module os= above=system InterfaceType=TPM2_0 "
         "FirmwareVersion=7.2"},
        {"chassis", "Chassis name=Chassis os= above=system ChassisType=RackMount Vendor=Example Works"},
        {"psu:PSU1", "PowerSupply name=EP-800 os= above=system MaxPower=800 W Model=EP-800 Health=OK(Volatile)"},
        {"psu:PSU2", "Slot name=Power supply bay os= above=system Usage=Absent"},
        {"fan:Fan1", "Fan name=Fan 1 os= above=system Slot=Front 1 Speed=2400 RPM(Volatile) PartNumber=EF-1"},
        {"sensor/temp:Intake", "TemperatureSensor name=Intake os= above=system Temperature=-2.5 degC(Volatile)"},
        {"bmc",
         "ManagementController name=EB-2 os= above=system InterfaceType=BMC Model=EB-2 FirmwareVersion=1.45 "
         "Address=02:00:00:00:00:0f"},
    };
    for (const auto& [locator, text] : devices) {
        EXPECT_EQ(machine.at(locator), text) << locator;
    }
    EXPECT_EQ(machine.recording.size(), std::size(devices) + 1) << machine.all();
    ASSERT_FALSE(machine.recording.unread().isEmpty());
    EXPECT_TRUE(machine.recording.unread()[0].mayHide(CapabilityImp(StringView(u"DIMM"))));
    EXPECT_FALSE(machine.recording.unread()[0].mayHide(CapabilityImp(StringView(u"Processor"))));
    EXPECT_THAT(machine.damage, ElementsAre("resources that others refer to and the recording does not have: 1 "
                                            "(first: /redfish/v1/Systems/S1/Memory/../../../../etc/A4)",
                                            "parts that report a health other than OK: 2 (first: dimm:A3, Critical)"));
}

TEST(RedfishTest, readsEveryLayoutAlike) {
    const ConvertedMachine machine(server());
    const auto folders = [](const std::string& path) {
        return "some/where/" + path + "/index.json";
    };
    const auto files = [](const std::string& path) {
        return path.substr(path.find('/') + 1) + ".json";
    };
    const auto flat = [](std::string path) {
        std::ranges::replace(path, '/', '_');
        return path;
    };
    for (int layout = 0; layout < 3; ++layout) {
        const MirrorFolder mirror;
        layout == 0   ? mirror.putAll(server(), folders)
        : layout == 1 ? mirror.putAll(server(), files)
                      : mirror.putAll(server(), flat);
        EXPECT_EQ(convertedFolder(mirror).all(), machine.all()) << layout;
        const ConvertedMachine archive(mirror.archive());
        EXPECT_EQ(archive.format, RecordingFormat::Redfish);
        EXPECT_EQ(archive.all(), machine.all()) << layout;
    }
}

TEST(RedfishTest, staysWithinAFolderOfHostileFiles) {
    const MirrorFolder mirror;
    mirror.putAll(server(), [](const std::string& path) { return path + "/index.json"; });
    const std::string all = convertedFolder(mirror).all();
    fs::create_directory_symlink("/", mirror.path() / "redfish" / "root");
    fs::create_directory_symlink(".", mirror.path() / "redfish" / "circle");
    fs::create_symlink("/etc/passwd", mirror.path() / "redfish" / "link.json");
    mirror.put("redfish/deep.json", std::string(100'000, '['));
    mirror.put("redfish/zz-twice.json", R"({"@odata.id": "/redfish/v1/Systems/S1/Memory/A1", "CapacityMiB": 1})");
    mirror.put("redfish/not.json", "\xFF\x00 no JSON");
    const ConvertedMachine machine = convertedFolder(mirror);
    EXPECT_EQ(machine.all(), all);
    EXPECT_THAT(machine.damage,
                testing::IsSupersetOf({"resources that cannot be read, left out: 5 (first: redfish/circle)",
                                       "resources that are there twice and differ, the first one taken: 1 "
                                       "(first: /redfish/v1/Systems/S1/Memory/A1)"}));
}

TEST(RedfishTest, refusesWhatIsTooMuch) {
    const MirrorFolder mirror;
    for (int number = 0; number < 9; ++number) {
        mirror.put(std::to_string(number) + ".json", "[]");
        fs::resize_file(mirror.path() / (std::to_string(number) + ".json"), 16U << 20U);
    }
    const ConvertedMachine machine = convertedFolder(mirror);
    EXPECT_FALSE(machine.isConverted);
    EXPECT_THAT(machine.refusal, HasSubstr("more than 128 MB"));
}

TEST(RedfishTest, takesCutOffArchivesAndDocuments) {
    const MirrorFolder mirror;
    mirror.putAll(server(), [](const std::string& path) { return path + ".json"; });
    const std::string archive = mirror.archive();
    for (std::size_t size = 0; size < archive.size(); size += 1499) {
        const ConvertedMachine machine(archive.substr(0, size));
        EXPECT_TRUE(!machine.isConverted || !machine.damage.empty()) << size;
    }
    EXPECT_FALSE(ConvertedMachine(server().substr(0, 3000)).isConverted);
}

TEST(RedfishTest, tellsPersistentMemoryAndLinksOfDrives) {
    const ConvertedMachine machine(R"({
        "/redfish/v1/Systems/S1/Memory/A1": {"CapacityMiB": 16384, "MemoryType": "DRAM"},
        "/redfish/v1/Systems/S1/Memory/A2": {"CapacityMiB": 1024, "MemoryDeviceType": "Flash"},
        "/redfish/v1/Systems/S1/Memory/A3": {"CapacityMiB": 131072, "MemoryType": "IntelOptane",
            "Status": {"Health": "Warning"}},
        "/redfish/v1/Systems/S1/Storage/R1/Drives/0": {"Protocol": "NVMe", "CapableSpeedGbs": 32, "NegotiatedSpeedGbs": 16,
            "Links": {"PCIeFunctions": [{"@odata.id": "/redfish/v1/Chassis/C1/PCIeDevices/D/PCIeFunctions/1"}]}},
        "/redfish/v1/Systems/S1/Storage/R1": {"Drives": [{"@odata.id": "/redfish/v1/Systems/S1/Storage/R1/Drives/0"}]},
        "/redfish/v1/Chassis/C1/PCIeDevices/D/PCIeFunctions/1":
            {"Links": {"PCIeDevice": {"@odata.id": "/redfish/v1/Chassis/C1/PCIeDevices/D"}}},
        "/redfish/v1/Chassis/C1/PCIeDevices/D": {"PCIeInterface": {"LanesInUse": 2, "MaxLanes": 4}},
        "/redfish/v1/Systems/S1": {"Memory": {"@odata.id": "/redfish/v1/Systems/S1/Memory"},
            "Storage": {"@odata.id": "/redfish/v1/Systems/S1/Storage"}}})");
    EXPECT_THAT(machine.at("memory"), HasSubstr("InstalledSize=16 GB"));
    EXPECT_THAT(machine.at("dimm:A2"), IsEmpty()) << "the firmware's chip";
    EXPECT_THAT(machine.at("dimm:A3"),
                AllOf(StartsWith("Storage name=Persistent memory module "),
                      HasSubstr("Technology=Intel Optane persistent memory"), HasSubstr("Health=Warning(Volatile)")));
    EXPECT_THAT(machine.at("storage:R1/drive:0"),
                AllOf(HasSubstr("MaxLinkSpeed=32 Gbit/s LinkSpeed=16 Gbit/s(Volatile)"),
                      HasSubstr("MaxLinkWidth=4 LinkWidth=2")));
}

TEST(RedfishTest, putsSeveralComputersBelowOneRoot) {
    const std::string one = R"([{"@odata.id": "/redfish/v1/Systems/S1"}])";
    const std::string further = R"([{"@odata.id": "/redfish/v1/Systems/S2", "BiosVersion": "1"}, )";
    std::string two = server();
    two.replace(two.find(one), one.size(), further + one.substr(1));
    const ConvertedMachine machine(two);
    EXPECT_THAT(machine.at("system"), StartsWith("System name=System "));
    EXPECT_THAT(machine.at("system:S1/dimm:A1"), HasSubstr("above=system:S1/memory"));
    EXPECT_THAT(machine.at("system:S2/bios"), HasSubstr("above=system:S2 FirmwareVersion=1"));
}

}  // namespace
}  // namespace vrx

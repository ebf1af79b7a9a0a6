#include "libMachine/MachineImport.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "libInventory/recording/SysInfoWriter.h"
#include "libSystemState/StateManager.h"

namespace vrx {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Failure = ImportReport::Failure;

constexpr const char* SYSINFO =
    "<SysInfo><Device type='System' name='One' hwLocator='system'>"
    "<Device type='Gizmo' name='Odd' hwLocator='odd'><property key='SerialNumber' value='ABCD1234'/></Device>"
    "</Device></SysInfo>";

constexpr const char* LSHW =
    "<node id='pc' class='system'><product>Box</product><serial>S-77</serial>\n"
    "<node id='core' class='bus'><product>B\xE9</product></node>";

std::string importedXml(std::string_view bytes, const ImportOptions& options = {}) {
    StateManager store;
    EXPECT_TRUE(importMachine(bytes, store, options).isImported());
    return sysInfoXml(store, true);
}

TEST(MachineImportTest, readsSysInfoAsTheEngineDoes) {
    StateManager store;
    const ImportResult result = importMachine(SYSINFO, store);
    EXPECT_EQ(result.format, RecordingFormat::SysInfo);
    EXPECT_TRUE(result.isImported());
    EXPECT_EQ(result.report.devices, 2U);
    EXPECT_THAT(result.damage, ::testing::IsEmpty());
    EXPECT_EQ(store.deviceCount(), 2);
}

TEST(MachineImportTest, pseudonymsKeepTypesThatNobodyKnows) {
    ImportOptions options;
    options.isAnonymous = true;
    const std::string xml = importedXml(SYSINFO, options);
    EXPECT_THAT(xml, HasSubstr("type=\"Gizmo\""));
    EXPECT_THAT(xml, Not(HasSubstr("ABCD1234")));
    EXPECT_EQ(importedXml(xml), xml);
    EXPECT_THAT(importedXml(LSHW, options), Not(HasSubstr("S-77")));
}

TEST(MachineImportTest, damageIsToldByKind) {
    StateManager store;
    const ImportResult result = importMachine(LSHW, store);
    ASSERT_TRUE(result.isImported());
    EXPECT_EQ(result.report.devices, static_cast<std::uint32_t>(store.deviceCount()));
    ASSERT_EQ(result.damage.size(), 2U);
    EXPECT_EQ(result.damage[0].kind, DamageKind::BytesNotUtf8);
    EXPECT_EQ(result.damage[0].count, 1U);
    EXPECT_EQ(result.damage[0].firstLine, 2U);
    EXPECT_EQ(damageText(result.damage[0]), "bytes that are no UTF-8, replaced: 1 (first: line 2)");
    EXPECT_EQ(result.damage[1].kind, DamageKind::XmlCutOff);
}

TEST(MachineImportTest, saysWhyThereIsNoMachine) {
    struct Row {
        std::string bytes;
        Failure failure;
        std::uint32_t row;
        std::uint32_t column;
        bool isUtf8;
    };
    const Row rows[] = {
        {"<SysInfo>\n <Device type='System'></SysInfo>", Failure::Malformed, 2, 26, true},
        {"<SysInfo>\n <Device type='\xE9'/></SysInfo>", Failure::Malformed, 2, 16, false},
        {"<!-- x -->\n<other/>", Failure::NoDevices, 2, 1, true},
        {"nothing", Failure::Malformed, 1, 1, true},
        {"<topology version='4.0'><object type='Machine'/></topology>", Failure::Malformed, 0, 0, true},
        {"# dmidecode 3.3\nNo SMBIOS nor DMI entry point found, sorry.\n", Failure::NoDevices, 0, 0, true},
    };
    for (const Row& row : rows) {
        StateManager store;
        const ImportResult result = importMachine(row.bytes, store);
        EXPECT_EQ(result.report.failure, row.failure) << row.bytes;
        EXPECT_EQ(result.report.row, row.row) << row.bytes;
        EXPECT_EQ(result.report.column, row.column) << row.bytes;
        EXPECT_EQ(result.isUtf8, row.isUtf8) << row.bytes;
    }
}

TEST(MachineImportTest, namesTheLineOfAnElementThatIsNotClosed) {
    StateManager store;
    const ImportResult result = importMachine("<SysInfo>\n<Device type='System'>\n</SysInfo>", store);
    EXPECT_EQ(result.report.reason, u"mismatched tag: expected </Device> for the <Device> of line 2");
}

TEST(MachineImportTest, readsFilesByTheirContent) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "vrx-machine-import.txt";
    for (const char* const content : {SYSINFO, LSHW}) {
        std::ofstream(path, std::ios::binary) << content;
        StateManager store;
        EXPECT_TRUE(importMachineFile(path.string(), store).isImported());
        EXPECT_EQ(sysInfoXml(store, true), importedXml(content));
    }
    std::filesystem::remove(path);
    for (const std::optional<RecordingFormat> format : {std::optional<RecordingFormat>(), {RecordingFormat::LshwXml}}) {
        StateManager store;
        const ImportResult result = importMachineFile(path.string(), store, {.format = format});
        EXPECT_EQ(result.report.failure, Failure::Unreadable);
        EXPECT_EQ(result.report.reason, u"No such file or directory");
    }
}

}  // namespace
}  // namespace vrx

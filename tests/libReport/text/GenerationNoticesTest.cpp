#include "libReport/text/GenerationNotices.h"

#include <gmock/gmock.h>

#include <set>

#include "libMachine/MachineImport.h"
#include "libSystemState/filter/SysinfoFilter.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string EXAMPLES = VRX_TEST_DATA "/../examples/";

std::set<std::string> idleOn(const std::string& recording, const SysinfoFilter& filter) {
    StateManager store;
    EXPECT_TRUE(importMachineFile(EXAMPLES + recording, store).isImported());
    const auto notices = idleFilterNotices(store, filter, "filter", false);
    return {notices.begin(), notices.end()};
}

TEST(GenerationNoticesTest, noRuleOfTheExampleIsIdleOnAllExampleRecordings) {
    SysinfoFilter filter;
    ASSERT_EQ(filter.loadFile(String::UTF8Decode(EXAMPLES + "SystemInformationFilter.xml")),
              SysinfoFilter::PARSE_SUCCESS);
    const std::set<std::string> workstation = idleOn("workstation.xml", filter);
    EXPECT_GT(workstation.size(), 0U);
    for (const std::string& notice : idleOn("server.xml", filter)) {
        EXPECT_FALSE(workstation.contains(notice)) << notice;
    }
}

TEST(GenerationNoticesTest, saysWhatOfAFilterFitsNothing) {
    StateManager store;
    importMachine(R"({"@odata.id": "/redfish/v1/Systems/1", "@odata.type": "x", "BiosVersion": "1",
                      "Status": {"Health": "OK"}})",
                  store);
    SysinfoFilter filter;
    ASSERT_EQ(filter.load("<system-information-filter><device type='Firmware'><property key='Version'/>"
                          "<property key='FirmwareVersion'/></device>\n<device type='BIOS'/>"
                          "<device type='System'><property key='Health'/></device></system-information-filter>"),
              SysinfoFilter::PARSE_SUCCESS);
    EXPECT_THAT(idleFilterNotices(store, filter, "f.xml", false),
                ElementsAre("f.xml:1:52: no Firmware of the machine has Version",
                            "f.xml:2:1: no device of the machine is a BIOS by this rule",
                            "f.xml:2:44: Health of a System changes by itself or belongs to the software; only "
                            "--all-categories names it"));
}

}  // namespace
}  // namespace vrx

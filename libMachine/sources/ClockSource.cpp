/// Real-time clocks: chips that keep the time while the machine is off. The kernel numbers them as it finds them; what
/// its driver calls the chip ("rtc_cmos", "rtc-efi", "pcf8563") tells them apart.

#include "libMachine/collect/CollectContext.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

void collectClocks(CollectContext& context) {
    static const std::string CLOCKS = "/sys/class/rtc/";
    for (const std::string& name : context.root.list(CLOCKS)) {
        const std::string text = cleanName(context.root.text(CLOCKS + name + "/name"));
        const std::string chip = text.substr(0, text.find(' '));  // behind it stands the bus address
        if (chip.empty()) {
            continue;
        }
        DeviceRecord clock;
        clock.type = u"Clock";
        clock.name = "Real-time clock";
        clock.hwLocator = "rtc:" + chip;
        clock.osLocator = "/dev/" + name;
        clock.parent = 0;
        clock.text(property::MODEL, chip);
        context.recording.add(std::move(clock));
    }
}

}  // namespace vrx

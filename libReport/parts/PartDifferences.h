#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "libReport/parts/PartGenerationReport.h"

namespace vrx {

/// What a person needs in order to tell the parts of an ambiguous group apart.
struct PartDifferences {
    /// What one part asks for and some other part of the group does not, in words.
    struct Asked {
        String part;
        std::vector<std::string> tests;
    };

    /// A property that the devices in question do not all have with the same value.
    struct Differing {
        std::string key;
        std::vector<std::string>
            values;  ///< in the order of the devices; each once, at the end "-" for devices without it
    };

    std::vector<boost::shared_ptr<IDeviceImp>> sharedDevices;  ///< claimed by two parts or more
    std::vector<Asked> asked;
    std::size_t alikeCount = 0;        ///< devices of the shared devices' types, themselves included
    std::vector<Differing> differing;  ///< among those of one type
};

PartDifferences differencesOf(const Array<Inventory::PartSpec>& group, const PartGenerationReport& report);

}  // namespace vrx

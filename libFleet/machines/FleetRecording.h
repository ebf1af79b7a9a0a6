#pragma once

#include <cstddef>
#include <string>

namespace vrx {

/// One recorded machine, before it is read.
struct FleetRecording {
    std::string name;      ///< how results call it
    std::string path;      ///< of a file, or of a folder with the resources of a Redfish service; empty for `bytes`
    std::string bytes;     ///< of one that lay in an archive
    std::string problem;   ///< why there is nothing to read; else empty
    bool isKnown = false;  ///< nobody wants it read again
};

/// How many recordings are behind, of how many; of an archive nobody knows before its end how many it holds, so it
/// counts as one.
struct FleetProgress {
    double done = 0;
    std::size_t total = 0;
};

}  // namespace vrx

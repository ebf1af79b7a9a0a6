#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/program/CommonOptions.h"
#include "cli/program/ResultStream.h"
#include "libFleet/FleetWriter.h"

namespace vrx::cli {

/// Everything that a fleet's results are written to, each in its format.
class FleetOutputs {
public:
    /// A file of results that holds some already; what is behind `size` in it goes.
    struct Begun {
        std::string path;
        std::uint64_t size = 0;
    };

    /// With `keepsParts` the lines of results are in their file as soon as they are there, whatever comes later.
    FleetOutputs(const CommonOptions& options, const Session& session, bool keepsParts,
                 const std::optional<Begun>& begun);

    /// `isOld` of a result that the file begun holds.
    void add(const FleetResult& result, std::optional<std::uint32_t> group, bool isOld);

    void finish(const FleetSummary& summary);

private:
    struct Output {
        std::unique_ptr<FleetWriter> writer;
        std::unique_ptr<ResultStream> stream;
        bool hasOld = false;
    };

    void open(const std::string& format, const std::string& path, const TextFormat& layout);

    Console& m_console;
    bool m_keepsParts;
    std::optional<Begun> m_begun;
    std::vector<Output> m_outputs;
    std::string m_text;
};

}  // namespace vrx::cli

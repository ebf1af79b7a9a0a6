#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "libFleet/FleetResult.h"
#include "libFleet/FleetSummary.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// Writes the results of a fleet in one format, one after the other, so that no format needs them all in memory. Every
/// operation adds to `out`.
///
///     const std::unique_ptr<FleetWriter> writer = fleetFormatNamed("csv")->make(TextFormat());
///     writer->begin(out);
///     for (const FleetResult& result : results) {
///         writer->add(result, summary.add(result), out);
///     }
///     writer->end(summary, out);
class FleetWriter {
public:
    virtual ~FleetWriter() = default;

    virtual void begin(std::string& out) = 0;

    /// `group` is what the summary said of the result.
    virtual void add(const FleetResult& result, std::optional<std::uint32_t> group, std::string& out) = 0;

    virtual void end(const FleetSummary& summary, std::string& out) = 0;
};

/// One format of the results of a fleet.
struct FleetFormat {
    std::string_view name;
    std::unique_ptr<FleetWriter> (*make)(const TextFormat& format);
};

/// text: the summary. json: a line for each machine. csv: a row for each. junit: a suite for each. html: one page.
/// nagios: one line. The first is what people get who ask for none.
std::span<const FleetFormat> fleetFormats() noexcept;

/// Null when there is none.
const FleetFormat* fleetFormatNamed(std::string_view name) noexcept;

}  // namespace vrx

#pragma once

#include "libFleet/FleetWriter.h"

/// The writers, one file each.
namespace vrx {

std::unique_ptr<FleetWriter> fleetText(const TextFormat& format);
std::unique_ptr<FleetWriter> fleetJson(const TextFormat& format);
std::unique_ptr<FleetWriter> fleetCsv(const TextFormat& format);
std::unique_ptr<FleetWriter> fleetJunit(const TextFormat& format);
std::unique_ptr<FleetWriter> fleetHtml(const TextFormat& format);
std::unique_ptr<FleetWriter> fleetNagios(const TextFormat& format);

/// "3 failed, 1 undetermined, 196 passed": what there is, the worst first. Of nothing "no machine was checked".
std::string countsText(const FleetSummary& summary);

/// What the guard says: that one fault is everywhere; empty when none is.
std::string suspicionText(const FleetSummary& summary);

/// What the bounds left out, one line each.
std::vector<std::string> limitLines(const FleetSummary& summary);

}  // namespace vrx

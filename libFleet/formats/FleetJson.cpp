#include "libFleet/formats/Formats.h"

namespace vrx {

namespace {

class JsonLines final : public FleetWriter {
public:
    void begin(std::string&) override {}
    void add(const FleetResult& result, std::optional<std::uint32_t>, std::string& out) override { out += result.line; }
    void end(const FleetSummary&, std::string&) override {}
};

}  // namespace

std::unique_ptr<FleetWriter> fleetJson(const TextFormat&) { return std::make_unique<JsonLines>(); }

}  // namespace vrx

/// One row for each machine.

#include "libFleet/formats/Formats.h"
#include "libReport/text/CsvTable.h"

namespace vrx {

namespace {

class CsvRows final : public FleetWriter {
public:
    void begin(std::string& out) override {
        CsvTable row;
        row.addRow(
            {"file", "verdict", "manufacturer", "model", "serial number", "host", "script", "faults", "headline"});
        out += row.text();
    }
    void add(const FleetResult& result, std::optional<std::uint32_t>, std::string& out) override {
        CsvTable row;
        row.addRow({result.file, nameOf(result.verdict), result.manufacturer, result.model, result.serialNumber,
                    result.hostName, result.script, std::to_string(result.faults.size()), result.headline});
        out += row.text();
    }
    void end(const FleetSummary&, std::string&) override {}
};

}  // namespace

std::unique_ptr<FleetWriter> fleetCsv(const TextFormat&) { return std::make_unique<CsvRows>(); }

}  // namespace vrx

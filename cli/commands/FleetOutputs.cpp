#include "cli/commands/FleetOutputs.h"

#include <utility>

namespace vrx::cli {

FleetOutputs::FleetOutputs(const CommonOptions& options, const Session& session, bool keepsParts,
                           const std::optional<Begun>& begun)
    : m_console(session.console), m_keepsParts(keepsParts), m_begun(begun) {
    if (options.hasMainResult()) {
        open(options.format, options.outputPath.empty() ? "-" : options.outputPath, options.textFormat(session));
    }
    for (const ExtraResult& extra : options.extraResults()) {
        TextFormat layout = extra.path == "-" ? session.console.outFormat() : TextFormat{};
        layout.isStable = options.isStable;
        open(extra.format, extra.path, layout);
    }
}

void FleetOutputs::open(const std::string& format, const std::string& path, const TextFormat& layout) {
    Output output;
    output.writer = fleetFormatNamed(format)->make(layout);
    output.hasOld = m_begun && format == "json" && areOneFile(path, m_begun->path);
    const ResultStream::Way way = output.hasOld                      ? ResultStream::Way::Behind
                                  : m_keepsParts && format == "json" ? ResultStream::Way::AsItComes
                                                                     : ResultStream::Way::InOneStep;
    output.stream = std::make_unique<ResultStream>(path, way, m_console, output.hasOld ? m_begun->size : 0);
    output.writer->begin(m_text);
    output.stream->write(std::exchange(m_text, {}));
    m_outputs.push_back(std::move(output));
}

void FleetOutputs::add(const FleetResult& result, std::optional<std::uint32_t> group, bool isOld) {
    for (Output& output : m_outputs) {
        if (!isOld || !output.hasOld) {
            output.writer->add(result, group, m_text);
            output.stream->write(m_text);
            m_text.clear();
        }
    }
}

void FleetOutputs::finish(const FleetSummary& summary) {
    for (Output& output : m_outputs) {
        output.writer->end(summary, m_text);
        output.stream->write(std::exchange(m_text, {}));
        output.stream->finish();
    }
}

}  // namespace vrx::cli

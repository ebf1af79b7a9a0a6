#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "libReport/text/TextFormat.h"

/// A report is made once, as data, and written in any of several formats. Each kind of report has one table of writers;
/// a format is a row of it.
///
///     const std::string json = writerNamed(checkWriters(), "json")->write(report, TextFormat());
namespace vrx {

/// One format of one kind of report.
template <typename Report>
struct ReportWriter {
    std::string_view name;

    /// The whole report. Only formats for people look at `format`.
    std::string (*write)(const Report& report, const TextFormat& format);

    /// The report must hold more than others need: see CheckBasis::listsElements.
    bool isDetailed = false;
};

/// The first is what people get who ask for none.
template <typename Report>
using ReportWriters = std::span<const ReportWriter<Report>>;

/// The writer of that name; null when there is none.
template <typename Report>
const ReportWriter<Report>* writerNamed(ReportWriters<Report> writers, std::string_view name) {
    const auto found = std::ranges::find(writers, name, &ReportWriter<Report>::name);
    return found == writers.end() ? nullptr : &*found;
}

}  // namespace vrx

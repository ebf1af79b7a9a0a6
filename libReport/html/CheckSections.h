#pragma once

#include "libReport/CheckReport.h"
#include "libReport/html/HtmlWriter.h"

/// The sections of the page of a check, one file each.
namespace vrx {

/// Verdict, headline, machine, script, program.
void writeVerdict(HtmlWriter& html, const CheckReport& report);

/// A card for each fault; the card of fault i has the id `fault-i`.
void writeFaults(HtmlWriter& html, const CheckReport& report);

/// What is waived, and waivers that have expired or cover nothing.
void writeWaivers(HtmlWriter& html, const CheckReport& report);

/// What could not be read, and mistakes of the script.
void writeLimits(HtmlWriter& html, const CheckReport& report);

/// The machine by place, faulty places linked to their faults.
void writeMachine(HtmlWriter& html, const CheckReport& report);

/// The script as a tree.
void writeScript(HtmlWriter& html, const CheckReport& report);

}  // namespace vrx

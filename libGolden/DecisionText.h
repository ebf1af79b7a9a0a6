#pragma once

#include <string>
#include <vector>

#include "libGolden/GoldenDraft.h"

/// A golden draft in words.
namespace vrx {

/// "a.xml, b.xml", "a.xml, b.xml, c.xml and 7 more".
std::string machineList(const GoldenDraft& draft, const std::vector<std::size_t>& machines);

/// What a decision is about: "name", "hardware locator", a key.
std::string subjectText(const GoldenDecision& decision);

/// Who has what: "8 GB (a.xml), 16 GB (b.xml, c.xml)".
std::string variantsText(const GoldenDraft& draft, const GoldenDecision& decision);

/// Why something is left out: "each piece has its own".
std::string_view reasonText(GoldenDecision::Reason reason);

/// A device for people: its type, name and hardware locator.
std::string deviceText(const GoldenDevice& device);

/// All decisions: a block for each device, a line for each decision.
std::string decisionsText(const GoldenDraft& draft);

}  // namespace vrx

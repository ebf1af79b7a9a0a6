#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/libInventory/support/World.h"

/// Scripts and machines on plain structures, and the rules for types and texts, for a second engine that is so slow and
/// simple that it must be right (PlainRun.h).
namespace vrx::test::plain {

using Texts = std::vector<std::string>;

struct Device {
    std::string type;  ///< one that isType knows, in its table's spelling
    std::string name;
    std::string hwLocator;
    std::string osLocator;
    Properties properties;
};
using Machine = std::vector<Device>;

struct Element {
    std::string tag;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<Element> children;
    Texts errors = {};  ///< what a failed run wrote into it

    /// The value of an attribute; null when there is none.
    const std::string* find(const std::string& name) const;
    std::string attribute(const std::string& name) const;

    /// Requires: no value holds what XML escapes.
    std::string toXml() const;
};

/// Everything that a host can see of a run. Devices are written "name/type/hardware locator/OS locator".
struct Outcome {
    bool passed = false;
    bool satisfied = false;
    Texts unsatisfied;
    Texts extra;
    Texts events;
    Texts parts;  ///< "guid: part[guids of its devices] part[...]", sorted
    std::string annotated;

    friend bool operator==(const Outcome&, const Outcome&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome);
};

std::string lower(std::string text);
std::string joined(const Texts& texts);
std::string guidOf(const Device& device);

/// Storage, SolidStateDrive, HardDiskDrive and Fan, in any letter case, are the only types.
bool isType(const std::string& type);
bool covers(const std::string& wanted, const std::string& type);

/// A range alone between anchors, or a regular expression; or the same text without anchors and letter case.
bool matchesPattern(const std::string& pattern, const std::string& value);

}  // namespace vrx::test::plain

#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"

namespace vrx {

/// What an import of a recorded machine did: how much came into the store, what was left out, and why it failed if it
/// did. The engine's log lines about an import are made from it.
///
///     ImportReport report;
///     if (!Inventory::importStateFromXmlFile(path, store, report)) {
///         show(report.row, report.column, report.reason);
///     }
///
/// Places are 1-based; 0 stands for none.
struct VRX_EXPORT ImportReport {
    enum class Failure : std::uint8_t {
        None,
        Unreadable,  ///< the file cannot be read; `reason` is the operating system's
        Malformed,   ///< the text is no XML; `reason` and the place are the parser's
        NoRoot,      ///< the document holds no element
        NoDevices    ///< it holds no list of devices; the place is that of its root
    };

    /// A property that was left out, and others because of it.
    struct Skipped {
        enum class Kind : std::uint8_t {
            UnknownUnits  ///< `text` is no unit; the reading of the list that the property stands in ends there
        };
        Kind kind = Kind::UnknownUnits;
        String key;             ///< of the property
        String text;            ///< what was wrong
        std::uint32_t row = 0;  ///< of the property's element
        std::uint32_t column = 0;
        std::uint32_t propertiesBehind = 0;  ///< how many of the same list were left out with it
        std::uint32_t device = 0;            ///< whose property it is: how many devices were added before that one

        /// The line that the engine logs about it.
        String line() const;
    };

    /// Something that looks like a device and that no rule of a script can see.
    struct PassedOver {
        enum class Kind : std::uint8_t {
            UnknownType,   ///< a device of a type that is none; it is in the store
            OtherElement,  ///< an element that is no device by its name: "DEVICE", "devise"
            OutsideOfList  ///< a device where no list of devices is
        };
        Kind kind = Kind::UnknownType;
        String element;  ///< its name
        String type;     ///< as it is written; empty for none
        std::uint32_t row = 0;
        std::uint32_t column = 0;
    };

    /// A measurement whose number is none; it is in the store with 0.
    struct NoNumber {
        std::uint32_t device = 0;  ///< how many devices were added before the one that it belongs to
        String key;                ///< of the property
        String text;               ///< in place of the number
        std::uint32_t row = 0;
        std::uint32_t column = 0;
    };

    /// A property whose key has an escape (`%u` and four digits) in it, so that no script can ask for it.
    struct CodedKey {
        std::uint32_t device = 0;  ///< how many devices were added before the one that it belongs to
        String key;
        std::uint32_t row = 0;
        std::uint32_t column = 0;
    };

    Failure failure = Failure::None;
    String reason;
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    bool isFile = false;
    String path;  ///< of the file

    std::uint32_t devices = 0;     ///< added to the store, also before a failure
    std::uint32_t properties = 0;  ///< of these devices
    Array<Skipped> skipped;        ///< in the order of the document
    Array<PassedOver> passedOver;  ///< likewise
    Array<NoNumber> noNumbers;     ///< likewise
    Array<CodedKey> codedKeys;     ///< likewise

    /// What the engine logs about the failure, one text a line; nothing without one.
    Array<String> failureLines() const;

    /// All error lines that the engine logs about the import, in order.
    Array<String> errorLines() const;
};

}  // namespace vrx

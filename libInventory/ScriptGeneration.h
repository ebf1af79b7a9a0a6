#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"
#include "libSystemState/filter/SysinfoFilter.h"

/// Scripts from machines, with more to choose than `Inventory::generateInventoryScript` offers.
///
///     ScriptOptions options;
///     options.leavesOutKernelNames = true;
///     options.isWellFormed = true;
///     std::ofstream("golden.xml") << generatedScript(machine, options).toUtf8();
namespace vrx {

/// What a generated script asks for. A default one asks for all that there is.
struct ScriptOptions {
    bool hasAllCategories = false;  ///< properties of the categories Volatile, Internal and Group as well
    bool checksNames = true;
    bool checksHwLocators = true;
    bool checksOsLocators = true;

    /// Borrowed. Null loads "SystemInformationFilter.xml" from the working directory when it is there, and writes an
    /// explanatory header comment.
    SysinfoFilter* filter = nullptr;

    /// Does not ask for OS locators that are names which the kernel hands out, where the hardware locator tells the
    /// device apart: a restart, or one disk more, gives them to other devices.
    bool leavesOutKernelNames = false;

    /// The text is well-formed XML, so it can be kept in a file and read by others. Characters that XML has no room for
    /// are written as escapes of patterns, `\x{001B}`; a locator with such a character is not asked for.
    bool isWellFormed = false;

    /// How the file of the working directory is read.
    SysinfoFilter::Language filterLanguage = SysinfoFilter::Language::Plain;
};

/// A script that the machine meets.
VRX_EXPORT String generatedScript(const StateManager& machine, const ScriptOptions& options);

/// Whether a file can hold the locator.
VRX_EXPORT bool canBeWritten(StringView locator) noexcept;

}  // namespace vrx

#pragma once

#include <archive.h>
#include <archive_entry.h>

#include "libCommon/io/SharedLibrary.h"

namespace vrx {

/// What is used of libarchive.
struct ArchiveLibrary : SharedLibrary {
    ArchiveLibrary() : SharedLibrary("libarchive.so.13", "libarchive13") {}

    /// The one of this process, loaded by the first call.
    static const ArchiveLibrary& instance() {
        static const ArchiveLibrary& library = *new ArchiveLibrary;
        return library;
    }

    VRX_LOADED_FUNCTION(archive_read_new)
    VRX_LOADED_FUNCTION(archive_read_free)
    VRX_LOADED_FUNCTION(archive_read_support_format_tar)
    VRX_LOADED_FUNCTION(archive_read_open_memory)
    VRX_LOADED_FUNCTION(archive_read_next_header)
    VRX_LOADED_FUNCTION(archive_read_data_block)
    VRX_LOADED_FUNCTION(archive_entry_pathname)
    VRX_LOADED_FUNCTION(archive_entry_filetype)
    VRX_LOADED_FUNCTION(archive_entry_hardlink)
};

}  // namespace vrx

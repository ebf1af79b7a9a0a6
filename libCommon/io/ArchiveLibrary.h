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
    VRX_LOADED_FUNCTION(archive_read_data)
    VRX_LOADED_FUNCTION(archive_error_string)
    VRX_LOADED_FUNCTION(archive_entry_pathname_utf8)
    VRX_LOADED_FUNCTION(archive_read_support_filter_all)
    VRX_LOADED_FUNCTION(archive_read_support_format_raw)
    VRX_LOADED_FUNCTION(archive_read_support_format_zip)
    VRX_LOADED_FUNCTION(archive_read_support_format_7zip)
    VRX_LOADED_FUNCTION(archive_read_support_format_cpio)
    VRX_LOADED_FUNCTION(archive_read_open_filename)
    VRX_LOADED_FUNCTION(archive_format)
    VRX_LOADED_FUNCTION(archive_filter_bytes)
};

}  // namespace vrx

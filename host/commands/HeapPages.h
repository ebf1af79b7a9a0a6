#pragma once

#include <string>

namespace vrx::host {

/// Prepares the heap for a recording that is read from the file: the memory that its devices will take is got from the
/// system at once and in huge pages, where the system has them, instead of page by page. Changes nothing for small
/// files and for what is no regular file.
void expectRecording(const std::string& path);

}  // namespace vrx::host

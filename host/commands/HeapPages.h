#pragma once

#include <initializer_list>
#include <string_view>

namespace vrx::host {

/// Prepares the heap for recordings and scripts that are read from these files: the memory that their contents will
/// take is got from the system at once and in huge pages, where the system has them, instead of page by page, and
/// memory that is freed in between is used again instead of going back. Changes nothing for small files, for what is no
/// regular file, and when the heap has been prepared already.
void expectFiles(std::initializer_list<std::string_view> paths);

}  // namespace vrx::host

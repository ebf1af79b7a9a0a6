#pragma once

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <memory>

#include "libCommon/text/String.h"

/// The 16-bit PCRE2 library with owning handles. Only the .cpp files of this library include it.
namespace vrx {

struct PcreDeleter {
    void operator()(pcre2_code* code) const noexcept { pcre2_code_free(code); }
    void operator()(pcre2_compile_context* context) const noexcept { pcre2_compile_context_free(context); }
    void operator()(pcre2_match_context* context) const noexcept { pcre2_match_context_free(context); }
    void operator()(pcre2_match_data* data) const noexcept { pcre2_match_data_free(data); }
};

template <typename Handle>
using PcreHandle = std::unique_ptr<Handle, PcreDeleter>;

using PcreCode = PcreHandle<pcre2_code>;

/// The units of a text as PCRE2 takes them; never null.
inline PCRE2_SPTR pcreUnits(StringView text) noexcept {
    return reinterpret_cast<PCRE2_SPTR>(text.data() != nullptr ? text.data() : u"");
}

}  // namespace vrx

/// The functions of {fmt}, which Debian has as a shared library only, for programs that take them in. What its headers
/// promise and this lacks, the linker takes from the shared library all the same.

#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template auto dragonbox::to_decimal(float value) noexcept -> dragonbox::decimal_fp<float>;
template auto dragonbox::to_decimal(double value) noexcept -> dragonbox::decimal_fp<double>;
template locale_ref::locale_ref(const std::locale& locale);
template auto locale_ref::get<std::locale>() const -> std::locale;
template auto thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template auto decimal_point_impl(locale_ref) -> char;
template void buffer<char>::append(const char*, const char*);

}  // namespace detail
FMT_END_NAMESPACE

#include "libLint/LintSubject.h"

#include "libCommon/text/PrintableText.h"

namespace vrx {

std::string tagOf(const XmlElement& element) { return "<" + printable(element.Name()) + ">"; }

}  // namespace vrx

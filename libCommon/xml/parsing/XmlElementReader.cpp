#include "libCommon/xml/parsing/XmlElementReader.h"

namespace vrx {

XmlElementReader::~XmlElementReader() = default;

const char* XmlElementReader::attributeOfPlacedElements() const noexcept { return ""; }

}  // namespace vrx

#include "libCommon/xml/XmlElementReader.h"

namespace vrx {

XmlElementReader::~XmlElementReader() = default;

}  // namespace vrx

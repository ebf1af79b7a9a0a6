#include "libCommon/Assertion.h"
#include "libCommon/error/StructuredException.h"
#include "libCommon/logging/Logger.h"
#include "libCommon/text/NumberText.h"

namespace vrx {

void assertionFailed(const char* expression, const char* file, int line) {
    const String text = concat(u"Assertion failed: ", String::UTF8Decode(expression), u" at ", String::UTF8Decode(file),
                               u":", toText(line));
    VRX_LOG(Logger::get("libCommon"), LogPriority::Error, text);
    throw StructuredException(StructuredException::ASSERTION_CODE, text);
}

}  // namespace vrx

#include "libSystemState/values/DataTypeImp.h"

namespace vrx {

const String& DataTypeImp::toString() const {
    static const String names[COUNT] = {u"UINT32",
                                        u"INT32",
                                        u"UINT64",
                                        u"BOOLEAN",
                                        u"DOUBLE",
                                        u"STRING",
                                        u"DATETIME",
                                        u"PERCENT",
                                        u"STRINGARRAY",
                                        u"UINT32ARRAY",
                                        u"INT32ARRAY",
                                        u"DISCRETEMEASUREMENT",
                                        u"UINT64ARRAY",
                                        u"DOUBLEARRAY",
                                        u"NONDISCRETEMEASUREMENT",
                                        u"LOCALIZEDSTRING",
                                        u"LOCALIZEDSTRINGARRAY"};
    return names[m_code];
}

}  // namespace vrx

#include "libCommon/io/SharedLibrary.h"

#include <archive.h>
#include <gmock/gmock.h>

namespace vrx {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

struct ReadsArchives : SharedLibrary {
    explicit ReadsArchives(const char* file) : SharedLibrary(file, "libarchive13") {}

    VRX_LOADED_FUNCTION(archive_read_new)
};

TEST(SharedLibraryTest, saysWhatToInstallWhereAFunctionIsMissing) {
    const ReadsArchives there("libarchive.so.13");
    EXPECT_THAT(there.problem(), IsEmpty());
    EXPECT_NE(there.archive_read_new, nullptr);

    const ReadsArchives absent("libnone.so.13");
    EXPECT_THAT(absent.problem(), HasSubstr("libnone.so.13"));
    EXPECT_THAT(absent.problem(), HasSubstr("; install the package libarchive13"));
    EXPECT_EQ(absent.archive_read_new, nullptr);

    EXPECT_THAT(ReadsArchives("libm.so.6").problem(), HasSubstr("libm.so.6 has no archive_read_new; "));
}

}  // namespace
}  // namespace vrx

# What the project uses, each a Debian package (tools/installDependencies holds their names).

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

find_package(Boost 1.81 REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc)
find_package(EXPAT REQUIRED)
pkg_check_modules(PCRE2 REQUIRED IMPORTED_TARGET libpcre2-16)
pkg_check_modules(LOG4CPLUS REQUIRED IMPORTED_TARGET log4cplus)

find_package(Boost 1.81 REQUIRED COMPONENTS json)
find_package(CLI11 REQUIRED)
find_package(fmt REQUIRED)
pkg_check_modules(HWLOC REQUIRED IMPORTED_TARGET hwloc)
pkg_check_modules(LIBARCHIVE REQUIRED IMPORTED_TARGET libarchive)

#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "libCommon/time/DateTime.h"
#include "libReport/text/TextFormat.h"

namespace vrx::cli {

/// The program's standard streams and clock, behind an interface so that tests can look at them and make them fail.
class Console {
public:
    virtual ~Console() = default;

    /// Writes to standard output. False, with the operating system's reason, when not everything could be written.
    virtual bool writeOut(std::string_view bytes, std::string& error) = 0;

    /// Writes to standard error; a failure is ignored, because there is nowhere left to say it.
    virtual void writeErr(std::string_view bytes) = 0;

    /// How texts on standard output are laid out.
    virtual TextFormat outFormat() const = 0;

    /// Whether somebody watches standard error, so that progress is worth showing.
    virtual bool showsProgress() const = 0;

    virtual std::chrono::steady_clock::time_point now() const = 0;

    /// What a clock on the wall shows.
    virtual DateTime time() const = 0;
};

}  // namespace vrx::cli

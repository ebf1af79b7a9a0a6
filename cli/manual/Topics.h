#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vrx::cli {

/// A file format that help and manual pages explain, with the document of docs/ that does so.
struct Topic {
    std::string_view name;  ///< "parts-list"
    std::string_view markdown;
};

/// Made of docs/ when the program is built.
std::span<const Topic> topics();

/// Null when there is none of that name.
const Topic* topicNamed(std::string_view name);

std::vector<std::string> topicNames();

/// The document laid out for a terminal of that width.
std::string topicText(const Topic& topic, unsigned width);

}  // namespace vrx::cli

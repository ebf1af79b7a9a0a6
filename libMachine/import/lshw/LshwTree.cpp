#include "libMachine/import/lshw/LshwTree.h"

#include <algorithm>
#include <charconv>

namespace vrx {

namespace {

struct TextField {
    std::string_view name;
    std::string LshwNode::*member;
};

constexpr TextField TEXT_FIELDS[] = {
    {"id", &LshwNode::id},           {"class", &LshwNode::kind},
    {"handle", &LshwNode::handle},   {"description", &LshwNode::description},
    {"product", &LshwNode::product}, {"vendor", &LshwNode::vendor},
    {"physid", &LshwNode::physId},   {"businfo", &LshwNode::busInfo},
    {"version", &LshwNode::version}, {"date", &LshwNode::date},
    {"serial", &LshwNode::serial},   {"slot", &LshwNode::slot},
};

struct NumberField {
    std::string_view name;
    std::uint64_t LshwNode::*member;
};

constexpr NumberField NUMBER_FIELDS[] = {
    {"size", &LshwNode::size},
    {"capacity", &LshwNode::capacity},
    {"width", &LshwNode::width},
    {"clock", &LshwNode::clock},
};

template <typename Field, std::size_t Size>
const Field* findField(const Field (&fields)[Size], std::string_view name) noexcept {
    const auto* const at =
        std::find_if(std::begin(fields), std::end(fields), [name](const Field& field) { return field.name == name; });
    return at == std::end(fields) ? nullptr : at;
}

/// The whole number that a text is; none for other texts.
template <typename Number>
std::optional<Number> numberIn(std::string_view text, int base = 10) noexcept {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

}  // namespace

void LshwNode::set(std::string_view name, std::string value) {
    if (const TextField* const field = findField(TEXT_FIELDS, name)) {
        this->*field->member = std::move(value);
    } else if (const NumberField* const number = findField(NUMBER_FIELDS, name)) {
        this->*number->member = numberIn<std::uint64_t>(value).value_or(0);
    } else if (name == "logicalname") {
        logicalNames.push_back(std::move(value));
    } else if (name == "claimed") {
        isClaimed = value == "true";
    } else if (name == "disabled") {
        isDisabled = value == "true";
    }
}

std::string_view LshwNode::setting(std::string_view name) const noexcept {
    const auto at =
        std::find_if(settings.begin(), settings.end(), [name](const auto& setting) { return setting.first == name; });
    return at == settings.end() ? std::string_view() : at->second;
}

bool LshwNode::can(std::string_view capability) const noexcept {
    return std::find(capabilities.begin(), capabilities.end(), capability) != capabilities.end();
}

std::string_view LshwNode::capabilityBehind(std::string_view start) const noexcept {
    const auto at = std::find_if(capabilities.begin(), capabilities.end(),
                                 [start](const std::string& capability) { return capability.starts_with(start); });
    return at == capabilities.end() ? std::string_view() : std::string_view(*at).substr(start.size());
}

std::string_view LshwNode::behind(std::string_view text, std::string_view start) noexcept {
    return text.starts_with(start) ? text.substr(start.size()) : std::string_view();
}

std::optional<unsigned> LshwNode::smbiosHandle() const noexcept {
    return numberIn<unsigned>(behind(handle, "DMI:"), 16);
}

bool LshwNode::isCalled(std::string_view word) const noexcept {
    return id.starts_with(word) && (id.size() == word.size() || id[word.size()] == ':');
}

const std::string& LshwNode::logicalName() const noexcept {
    static const std::string NO_NAME;
    return logicalNames.empty() ? NO_NAME : logicalNames.front();
}

void LshwTree::cutOff(std::size_t innermost) {
    openAtEnd = innermost;
    if (innermost != LshwNode::NONE && innermost + 1 == nodes.size()) {
        openAtEnd = nodes.back().parent;
        nodes.pop_back();
    }
}

bool LshwTree::isCutOff(std::size_t place) const noexcept {
    std::size_t open = openAtEnd;
    while (open != LshwNode::NONE && open > place) {
        open = nodes[open].parent;
    }
    return open == place;
}

std::size_t LshwTree::add(std::size_t parent) {
    nodes.emplace_back().parent = parent;
    return nodes.size() - 1;
}

}  // namespace vrx

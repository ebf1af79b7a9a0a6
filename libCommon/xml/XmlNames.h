#pragma once

#include <array>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <utility>

#include "libCommon/text/String.h"
#include "libCommon/text/TextHash.h"
#include "libCommon/xml/XmlArena.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

/// The distinct names of a document, each stored once, so that names are equal exactly when their pointers are. Several
/// threads may ask at once.
class XmlNames {
public:
    /// The arena is borrowed and must outlive the names.
    explicit XmlNames(XmlArena& arena) noexcept : m_arena(arena) {}

    /// The stored name of that text.
    const XmlName* intern(StringView text);

    /// The same for valid UTF-8.
    const XmlName* internUtf8(std::string_view text);

    /// Whether there is one that equals the text without letter case.
    bool holdsNoCase(StringView text);

private:
    const XmlName* add(StringView keptText, const char* utf8);

    std::mutex m_mutex;
    XmlArena& m_arena;
    boost::unordered_flat_map<StringView, const XmlName*, TextHash> m_names;
};

/// Names of another document, which stay where they are: where a name lies says which it is.
class XmlNameCopies {
public:
    explicit XmlNameCopies(XmlNames& names) noexcept : m_names(names) {}

    const XmlName* find(StringView name) {
        const auto address = reinterpret_cast<std::uintptr_t>(name.data());
        Copy& copy = m_copies[(address / sizeof(char16_t) ^ address / SIZE) % SIZE];
        if (copy.name == nullptr || copy.original.data() != name.data() || copy.original.size() != name.size()) {
            copy = {name, m_names.intern(name)};
        }
        return copy.name;
    }

private:
    static constexpr std::size_t SIZE = 64;

    struct Copy {
        StringView original;
        const XmlName* name = nullptr;
    };

    XmlNames& m_names;
    std::array<Copy, SIZE> m_copies{};
};

/// Names as the XML parser hands them out: zero-terminated UTF-8, in memory that it reuses for the same name
/// (attributes) or for whatever stands at the same depth (elements). So the address is a good guess at the name; the
/// characters are still compared, because an address promises nothing.
class XmlNameCache {
public:
    explicit XmlNameCache(XmlNames& names) noexcept : m_names(names) {}

    const XmlName* find(const char* name) {
        Guesses& guesses = m_guesses[slotOf(name)];
        if (!isSame(guesses.latest, name)) {
            std::swap(guesses.latest, guesses.earlier);
            if (!isSame(guesses.latest, name)) {
                guesses.latest = findByText(name);
            }
        }
        return guesses.latest;
    }

private:
    static constexpr std::size_t SIZE = 64;
    static constexpr XmlName NONE{};  ///< no parser hands out an empty name

    /// Two, because two names that alternate in one slot would drive each other out every time.
    struct Guesses {
        const XmlName* latest = &NONE;
        const XmlName* earlier = &NONE;
    };

    /// The names of a document are few, and elements at many depths have the same.
    const XmlName* findByText(std::string_view name) {
        const XmlName*& known = m_known[(name.size() * 7 + static_cast<unsigned char>(name.front())) % SIZE];
        if (known == nullptr || !isSame(known, name.data())) {
            known = m_names.internUtf8(name);
        }
        return known;
    }

    static std::size_t slotOf(const char* name) noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(name);
        return (address ^ (address >> 6)) % SIZE;
    }

    static bool isSame(const XmlName* known, const char* name) noexcept { return std::strcmp(known->utf8, name) == 0; }

    XmlNames& m_names;
    std::array<Guesses, SIZE> m_guesses{};
    std::array<const XmlName*, SIZE> m_known{};  ///< by length and first letter
};

}  // namespace vrx

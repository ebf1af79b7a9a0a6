/// A name in `--exclude` is that of a source when it is spelled as one, in small letters; else it is a device type, in
/// any letters. So "network" switches the source off, and what PCI alone tells of the adapters stays; "Network" leaves
/// out the adapters.

#include "libMachine/collect/SourceChoice.h"

#include <algorithm>

#include "libMachine/collect/SourceTable.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/capabilities/CapabilityNames.h"

namespace vrx {

namespace {

std::optional<std::size_t> numberOf(const std::string& name) {
    const auto all = sources();
    const auto found = std::ranges::find(all, std::string_view(name), &Source::name);
    return found == all.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - all.begin()));
}

std::uint64_t bitOf(const std::string& name) {
    const std::optional<std::size_t> number = numberOf(name);
    return number ? std::uint64_t{1} << *number : 0;
}

constexpr StringView NOT_ASKED_FOR = u"not asked for";

/// Types of devices that nobody looked for, by whether the recording holds others of the type.
struct Unread {
    CapabilityImp devices;
    CapabilityImp properties;

    void add(const CapabilityImp& type, const CapabilityImp& kept) {
        const Array<String> names = kept.names();
        const bool isKept = std::any_of(names.begin(), names.end(),
                                        [&type](const String& name) { return type.isCapable(CapabilityImp(name)); });
        CapabilityImp& types = isKept ? properties : devices;
        types = types | type;
    }

    void note(const String& source, StringView reason, Recording& recording) const {
        if (!devices.isEmpty()) {
            recording.addUnread({source, devices, String(reason), {}});
        }
        if (!properties.isEmpty()) {
            recording.addUnread({source, properties, String(reason), {String(UnreadSource::ANY_PROPERTY)}});
        }
    }
};

CapabilityImp typeOf(const std::string& name) { return CapabilityImp(String::UTF8Decode(name)); }

UnknownCollectName unknown(const std::string& name, bool isExcluded) {
    UnknownCollectName unknown{name, isExcluded, {}};
    for (const Source& source : sources()) {
        unknown.known.push_back(String::UTF8Decode(source.name));
    }
    if (isExcluded) {
        for (const StringView type : capabilityNames()) {
            unknown.known.emplace_back(type);
        }
    }
    return unknown;
}

}  // namespace

std::optional<UnknownCollectName> SourceChoice::unknownName(const CollectOptions& options) {
    for (const std::string& name : options.sources) {
        if (!numberOf(name)) {
            return unknown(name, false);
        }
    }
    for (const std::string& name : options.excluded) {
        const bool isType = !typeOf(name).isInvalid() && !typeOf(name).isAll() && !typeOf(name).isEmpty();
        if (!numberOf(name) && !isType) {
            return unknown(name, true);
        }
    }
    return std::nullopt;
}

SourceChoice::SourceChoice(const CollectOptions& options) : m_isTableOnly(options.isTableOnly()) {
    for (const std::string& name : options.sources) {
        m_wanted |= bitOf(name);
    }
    if (options.sources.empty()) {
        m_wanted = ~std::uint64_t{0};
    }
    for (const std::string& name : options.excluded) {
        if (const std::uint64_t bit = bitOf(name)) {
            m_wanted &= ~bit;
        } else {
            m_excluded = m_excluded | typeOf(name);
        }
    }
}

bool SourceChoice::runs(std::size_t source) const {
    const Source& row = sources()[source];
    const bool isNeeded = row.givesPlaces || isWanted(std::uint64_t{1} << source);
    return isNeeded && (row.readsTable || !m_isTableOnly);
}

bool SourceChoice::readsTable() const {
    const std::span<const Source> all = sources();
    for (std::size_t number = 0; number < all.size(); ++number) {
        if (all[number].readsTable && isWanted(std::uint64_t{1} << number)) {
            return true;
        }
    }
    return false;
}

SourceChoice::Silence SourceChoice::silenceOf(std::size_t source) const {
    if (!isWanted(std::uint64_t{1} << source)) {
        return Silence::NotAskedFor;
    }
    return m_isTableOnly && !sources()[source].readsTable ? Silence::NotInTable : Silence::None;
}

void SourceChoice::noteSilent(Silence silence, const CapabilityImp& kept, Recording& recording) const {
    Unread unread;
    String names;
    const std::span<const Source> all = sources();
    for (std::size_t number = 0; number < all.size(); ++number) {
        if (silenceOf(number) == silence) {
            names += concat(names.isEmpty() ? StringView(u"sources ") : u", ", String::UTF8Decode(all[number].name));
            for (const StringView type : all[number].types) {
                unread.add(CapabilityImp(type), kept);
            }
        }
    }
    unread.note(names, silence == Silence::NotAskedFor ? NOT_ASKED_FOR : u"not in the SMBIOS table", recording);
}

void SourceChoice::apply(Recording& recording) const {
    CapabilityImp kept(recording.at(0).type);
    for (std::size_t place = 1; place < recording.size(); ++place) {
        const CapabilityImp type(recording.at(place).type);
        if (!isWanted(recording.at(place).sources) || m_excluded.isCapable(type)) {
            recording.leaveOut(place);
        } else {
            kept = kept | type;
        }
    }
    noteSilent(Silence::NotAskedFor, kept, recording);
    noteSilent(Silence::NotInTable, kept, recording);
    Unread ofTypes;
    ofTypes.devices = m_excluded;
    ofTypes.note(u"devices of these types", NOT_ASKED_FOR, recording);
}

}  // namespace vrx

/// Two steps:
///
///   1. Properties that hold an identity by their key get a pseudonym each, and the pairs of old and new are kept.
///   2. Every other text (names, locators, values) is searched for the old ones, as whole words, and for anything that
///      has the form of a hardware address or of a UUID.
///
/// An identity of fewer than five letters or digits is not searched for: it would be found in what is none. Nor is one
/// of letters alone in hardware locators: a machine may well be called "memory".

#include "libMachine/record/Anonymize.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>
#include <unordered_map>

#include "libCommon/text/TextHash.h"
#include "libMachine/record/CleanText.h"
#include "libMachine/record/Pseudonym.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

constexpr StringView IDENTITIES[] = {property::SERIAL_NUMBER, property::ASSET_TAG, property::UUID,
                                     property::WWN,           property::ADDRESS,   property::FILE_SYSTEM_UUID,
                                     property::HOST_NAME,     property::NODE_GUID};

bool isIdentity(const PropertyRecord& property) noexcept {
    return std::find(std::begin(IDENTITIES), std::end(IDENTITIES), property.key) != std::end(IDENTITIES);
}

bool isWordUnit(char unit) noexcept { return std::isalnum(static_cast<unsigned char>(unit)) != 0; }

class Anonymizer {
public:
    void run(Recording& recording) {
        for (std::size_t place = 0; place < recording.size(); ++place) {
            replaceIdentities(recording.at(place));
        }
        for (std::size_t place = 0; place < recording.size(); ++place) {
            replaceMentions(recording.at(place));
        }
    }

private:
    void replaceIdentities(DeviceRecord& device) {
        for (PropertyRecord& property : device.properties) {
            if (isIdentity(property)) {
                replaceTexts(property.value, [this](const std::string& text) { return identity(text); });
            }
        }
    }

    void replaceMentions(DeviceRecord& device) {
        const auto searched = [this](const std::string& text) {
            return withoutMentions(text);
        };
        device.name = searched(device.name);
        device.hwLocator = withoutMentions(device.hwLocator, true);
        device.osLocator = searched(device.osLocator);
        for (PropertyRecord& property : device.properties) {
            if (!isIdentity(property) && property.key != property::PARTITION_TYPE) {
                replaceTexts(property.value, searched);
            }
        }
    }

    template <typename Replace>
    static void replaceTexts(ValueImp& value, const Replace& replace) {
        if (value.type().code() == DataTypeImp::STRING) {
            value = ValueImp(String::UTF8Decode(replace(value.toString(false).toUtf8())));
        } else if (value.type().code() == DataTypeImp::STRINGARRAY) {
            Array<String> texts;
            for (const String& text : value.toStringArray(false)) {
                texts.append(String::UTF8Decode(replace(text.toUtf8())));
            }
            value = ValueImp(std::move(texts));
        }
    }

    std::string identity(const std::string& text) {
        static constexpr std::ptrdiff_t SHORTEST_SEARCHED = 5;
        static constexpr std::size_t LONGEST_SEARCHED = 256;
        if (isPlaceholder(String::UTF8Decode(text))) {
            return text;
        }
        std::string other = pseudonymByForm(text);
        const auto first = std::find_if(text.begin(), text.end(), isWordUnit) - text.begin();
        const auto last = std::find_if(text.rbegin(), text.rend(), isWordUnit) - text.rbegin();
        if (std::count_if(text.begin(), text.end(), isWordUnit) >= SHORTEST_SEARCHED &&
            text.size() <= LONGEST_SEARCHED) {
            const auto start = static_cast<std::size_t>(first);
            const std::size_t size = text.size() - static_cast<std::size_t>(last) - start;
            m_known.emplace(text.substr(start, size), other.substr(start, size));
            m_longest = std::max(m_longest, size);
        }
        return other;
    }

    std::string withoutMentions(const std::string& text, bool isLocator = false) const {
        std::string result;
        for (std::size_t at = 0; at < text.size();) {
            const bool isStart = isWordUnit(text[at]) && (at == 0 || !isWordUnit(text[at - 1]));
            const std::size_t size = isStart ? mentionAt(text, at, isLocator, result) : 0;
            if (size == 0) {
                result.push_back(text[at]);
            }
            at += std::max<std::size_t>(size, 1);
        }
        return result;
    }

    /// Appends the pseudonym of the longest identity that starts there and returns its size; 0 when none does.
    std::size_t mentionAt(const std::string& text, std::size_t at, bool isLocator, std::string& result) const {
        const std::size_t limit = std::min(text.size(), at + std::max(m_longest, LONGEST_FORM));
        std::string best;
        std::size_t size = 0;
        for (std::size_t end = wordEnd(text, at); end <= limit && end > at + size; end = wordEnd(text, end)) {
            if (std::string other = mentioned(text.substr(at, end - at), isLocator); !other.empty()) {
                best = std::move(other);
                size = end - at;
            }
            if (end == text.size()) {
                break;
            }
        }
        result += best;
        return size;
    }

    /// The pseudonym of a text that is an identity as a whole; empty when it is none.
    std::string mentioned(const std::string& word, bool isLocator) const {
        static constexpr std::size_t ADDRESS_DIGITS = 12;
        static constexpr std::string_view NAMED_BY_ADDRESS = "enx";  // how interfaces on USB are called
        if (const auto known = m_known.find(word); known != m_known.end()) {
            const bool hasDigit = word.find_first_of("0123456789") != std::string::npos;
            return isLocator && !hasDigit ? std::string() : known->second;
        }
        if (isUuid(word) || isHardwareAddress(word)) {
            return pseudonymByForm(word);
        }
        const std::string_view behind = std::string_view(word).substr(std::min(NAMED_BY_ADDRESS.size(), word.size()));
        const bool isNamed = word.starts_with(NAMED_BY_ADDRESS) && behind.size() == ADDRESS_DIGITS &&
                             behind.find_first_not_of("0123456789abcdef") == std::string_view::npos;
        return isNamed ? std::string(NAMED_BY_ADDRESS) + addressPseudonym(behind) : std::string();
    }

    /// The end of the first word that ends behind that place.
    static std::size_t wordEnd(const std::string& text, std::size_t at) {
        while (at < text.size() && !isWordUnit(text[at])) {
            ++at;
        }
        while (at < text.size() && isWordUnit(text[at])) {
            ++at;
        }
        return at;
    }

    static constexpr std::size_t LONGEST_FORM = 36;

    std::unordered_map<std::string, std::string, TextHash> m_known;
    std::size_t m_longest = 0;
};

}  // namespace

void anonymize(Recording& recording) { Anonymizer().run(recording); }

}  // namespace vrx

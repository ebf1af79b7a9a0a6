/// Sound cards. A card on a PCI function or in a USB device is that device; one on the board becomes a device of its
/// own. Codecs stand below their card by their address on its link. Cards that are software (loopbacks, dummies) are
/// left out.

#include <fmt/format.h>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string CARDS = "/sys/class/sound/";

bool isSoftware(std::string_view sysPath) noexcept {
    return isVirtualFolder(sysPath) || sysPath.find("/snd_") != std::string_view::npos;
}

/// The value of a line "LABEL: VALUE".
std::string labelled(std::string_view text, std::string_view label) {
    for (std::size_t at = text.find(label); at != std::string_view::npos; at = text.find(label, at + 1)) {
        if (at == 0 || text[at - 1] == '\n') {
            const std::size_t start = at + label.size();
            return std::string(text.substr(start, text.find('\n', start) - start));
        }
    }
    return {};
}

/// The device that the card is, as the recording has it or as a new one.
std::size_t placeOfCard(CollectContext& context, const std::string& sysPath, const std::string& id) {
    const std::size_t above = context.recording.nearest(sysPath);
    if (above != Recording::NONE) {
        return above;
    }
    DeviceRecord card;
    card.type = u"AudioDevice";
    card.name = id.empty() ? "Sound card" : "Sound card " + id;
    card.hwLocator = placeOfFolder(context.recording, sysPath);
    card.osLocator = "/proc/asound/" + id;
    card.sysPath = sysPath;
    card.text(property::DRIVER, context.root.linkTarget(sysPath + "/driver"), Category::Internal());
    return context.recording.add(std::move(card));
}

/// A number of two halves, as maker and device: "0x10ec0257".
void addIds(DeviceRecord& codec, StringView upperKey, StringView lowerKey, std::string_view text) {
    const auto number = parseNumber(text).value_or(0);
    if (number != 0) {
        codec.add(upperKey, String::UTF8Decode(fmt::format("{:04x}", number >> 16 & 0xFFFF)));
        codec.add(lowerKey, String::UTF8Decode(fmt::format("{:04x}", number & 0xFFFF)));
    }
}

void addCodec(CollectContext& context, std::size_t card, const std::string& path, const std::string& osLocator) {
    const std::string text = context.root.text(path);
    const std::string model = cleanName(labelled(text, "Codec: "));
    const std::string address = labelled(text, "Address: ");
    if (model.empty() || !parseNumber(address)) {
        return;
    }
    DeviceRecord codec;
    codec.type = u"AudioDevice";
    codec.name = model;
    codec.hwLocator = fmt::format("{}/codec:{}", context.recording.at(card).hwLocator, address);
    codec.osLocator = osLocator;
    codec.parent = card;
    codec.text(property::MODEL, model);
    addIds(codec, property::VENDOR_ID, property::DEVICE_ID, labelled(text, "Vendor Id: "));
    addIds(codec, property::SUBSYSTEM_VENDOR_ID, property::SUBSYSTEM_ID, labelled(text, "Subsystem Id: "));
    codec.text(property::REVISION, labelled(text, "Revision Id: "));
    context.recording.add(std::move(codec));
}

}  // namespace

void collectSound(CollectContext& context) {
    const RootFolder& root = context.root;
    for (const std::string& name : root.list(CARDS)) {
        if (!name.starts_with("card")) {
            continue;
        }
        const std::string sysPath = root.resolved(CARDS + name + "/device");
        if (sysPath.empty() || isSoftware(sysPath)) {
            continue;
        }
        const std::string id = root.text(CARDS + name + "/id");
        const std::size_t card = placeOfCard(context, sysPath, id);
        context.recording.amend(card).isAlso(u"AudioDevice");
        const std::string folder = "/proc/asound/" + name;
        for (const std::string& file : root.list(folder)) {
            if (file.starts_with("codec#")) {
                addCodec(context, card, folder + "/" + file, "/proc/asound/" + id + "/" + file);
            }
        }
    }
}

}  // namespace vrx

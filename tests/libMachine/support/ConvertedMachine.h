#pragma once

#include <string>
#include <vector>

#include "libMachine/import/ForeignRecording.h"
#include "libMachine/record/Recording.h"

namespace vrx {

/// A recording of another program, converted.
struct ConvertedMachine {
    explicit ConvertedMachine(std::string_view text) : format(recognisedFormat(text)) {
        DamageList list;
        isConverted = isForeign(format) && convertForeign(format, text, recording, list);
        for (const ImportDamage& kind : list.all()) {
            damage.push_back(damageText(kind));
        }
    }

    /// A recording that is a folder.
    ConvertedMachine(RecordingFormat folderFormat, const std::string& folder) : format(folderFormat) {
        DamageList list;
        isConverted = convertForeignFolder(format, folder, recording, list);
        refusal = list.refusal();
        for (const ImportDamage& kind : list.all()) {
            damage.push_back(damageText(kind));
        }
    }

    /// "TYPE name=NAME os=LOCATOR above=LOCATOR KEY=VALUE ..." of the device at a place; "(Volatile)" and "(Internal)"
    /// stand behind values that are so. Empty when there is none.
    std::string at(const std::string& hwLocator) const {
        for (std::size_t place = 0; place < recording.size(); ++place) {
            if (recording.at(place).hwLocator == hwLocator) {
                return textOf(recording.at(place));
            }
        }
        return {};
    }

    std::string all() const {
        std::string text;
        for (std::size_t place = 0; place < recording.size(); ++place) {
            text += recording.at(place).hwLocator + " " + textOf(recording.at(place)) + "\n";
        }
        return text;
    }

    RecordingFormat format;
    bool isConverted = false;
    Recording recording;
    std::vector<std::string> damage;
    std::string refusal;

private:
    std::string textOf(const DeviceRecord& device) const {
        std::string text = toUtf8(device.type) + " name=" + device.name + " os=" + device.osLocator;
        if (device.parent) {
            text += " above=" + recording.at(*device.parent).hwLocator;
        }
        for (const PropertyRecord& property : device.properties) {
            text += " " + toUtf8(property.key) + "=" + property.value.toString(false).toUtf8();
            text += property.category.intersect(PropertyCategoryImp::Volatile()) ? "(Volatile)" : "";
            text += property.category.intersect(PropertyCategoryImp::Internal()) ? "(Internal)" : "";
        }
        return text;
    }
};

}  // namespace vrx

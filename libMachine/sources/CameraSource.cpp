/// Cameras and other sources of pictures that programs may use. One on a PCI function or in a USB device is that
/// device; of those on the board only what calls itself a camera is recorded, because decoders and scalers of the same
/// chip look alike. Cameras that are software are left out.

#include "libMachine/collect/CollectContext.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

const std::string CAMERAS = "/sys/class/video4linux/";

bool callsItselfCamera(const std::string& name) {
    return foldCase(String::UTF8Decode(name).view()).view().find(u"cam") != StringView::npos;
}

void addOnBoard(CollectContext& context, const std::string& name, const std::string& sysPath) {
    const std::string model = cleanName(context.root.text(CAMERAS + name + "/name"));
    if (!callsItselfCamera(model)) {
        return;
    }
    DeviceRecord camera;
    camera.type = u"Camera";
    camera.name = model;
    camera.hwLocator = placeOfFolder(context.recording, sysPath);
    camera.osLocator = "/dev/" + name;
    camera.sysPath = sysPath;
    camera.text(property::MODEL, model);
    context.recording.add(std::move(camera));
}

}  // namespace

void collectCameras(CollectContext& context) {
    for (const std::string& name : context.root.list(CAMERAS)) {
        const std::string sysPath = context.root.resolved(CAMERAS + name + "/device");
        if (!name.starts_with("video") || sysPath.empty() || isVirtualFolder(sysPath)) {
            continue;
        }
        const std::size_t above = context.recording.nearest(sysPath);
        if (above == Recording::NONE) {
            addOnBoard(context, name, sysPath);
            continue;
        }
        DeviceRecord& device = context.recording.amend(above);
        device.isAlso(device.hwLocator.starts_with("usb:") ? StringView(u"Camera") : StringView(u"VideoCapture"));
    }
}

}  // namespace vrx

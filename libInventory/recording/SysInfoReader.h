#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/parsing/XmlElementReader.h"
#include "libInventory/ImportReport.h"
#include "libInventory/recording/DevicesAhead.h"
#include "libInventory/recording/PropertyListReader.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Reads the devices of one SysInfo document into a store. A reader serves one document and must not outlive the store
/// or the report.
///
/// Devices may be read while the document is being parsed, with the reader given to `XmlDocument`; the store gets them
/// from `readDevices` afterwards in any case.
class SysInfoReader final : public XmlElementReader, private PropertyListReader::Listener {
public:
    /// What is added and what is left out goes into the report.
    SysInfoReader(StateManager& store, ImportReport& report) : m_store(store), m_report(report) {}

    bool readElement(XmlElement& element) override { return m_ahead.front().readElement(element); }

    XmlElementReader* forAnotherThread() override { return &m_ahead.emplace_back(); }

    void startOver() override;

    /// Those that may be left out, which the report then tells the places of.
    const char* attributeOfPlacedElements() const noexcept override { return "units"; }

    /// Adds the devices that are listed under the root, each followed by those nested in it. False when the root holds
    /// no device list.
    bool readDevices(XmlElement& root);

    /// Whether there was anything that rules of scripts cannot see, or a measurement without a number. Requires: the
    /// document was read while it was parsed.
    bool hasMetOddities() const;

private:
    bool readList(XmlElement& parent);
    void readDevice(XmlElement& element, std::uint32_t counter);
    void addAhead(DeviceAhead& ahead);
    void addDevice(const boost::shared_ptr<IDeviceImp>& device, const RecordedProperties& properties);
    void registerSpec(std::uint32_t position);

    void meetKey(std::uint32_t spec) override;
    void takeProperty(std::uint32_t spec) override;
    void skipFrom(const XmlElement& property) override;

    StateManager& m_store;
    ImportReport& m_report;
    PropertyListReader m_reader;
    std::deque<DevicesAhead> m_ahead = std::deque<DevicesAhead>(1);  // of each thread
    std::vector<bool> m_isRegistered;                                // by position in the list of specs
    std::size_t m_registered = 0;
    bool m_hasMetOddities = false;
};

}  // namespace vrx

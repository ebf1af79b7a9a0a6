#pragma once

#include <boost/shared_ptr.hpp>

#include "libCommon/containers/Array.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// The devices that are tried for one element: a list of the store, until somebody is told something who might add
/// devices to the store. From then on it is a copy, so that what is tried is what was there when the trying began.
class CandidateList {
public:
    using DeviceArray = Array<boost::shared_ptr<IDeviceImp>>;

    /// `inUse` points to the list while it lives.
    CandidateList(const DeviceArray& borrowed, CandidateList*& inUse) noexcept : m_list(&borrowed), m_inUse(inUse) {
        m_inUse = this;
    }
    ~CandidateList() { m_inUse = nullptr; }
    CandidateList(const CandidateList&) = delete;
    CandidateList& operator=(const CandidateList&) = delete;

    void makeOwn() {
        if (m_list != &m_own) {
            m_own = *m_list;
            m_list = &m_own;
        }
    }

    const DeviceArray& devices() const noexcept { return *m_list; }

private:
    DeviceArray m_own;
    const DeviceArray* m_list;
    CandidateList*& m_inUse;
};

}  // namespace vrx

#pragma once

#include <boost/json/object.hpp>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// A resource, or an entry of a list in one, and what tells it apart from its neighbours.
struct RedfishPart {
    const boost::json::object* data = nullptr;
    std::string id;
};

/// The resources of a service by path, whatever the files were called that they stood in: a resource says itself what
/// its path is. References stay within the mirror; one that leads nowhere is counted.
class RedfishTree {
public:
    explicit RedfishTree(DamageList& damage) : m_damage(damage) {}

    /// Adds what a file holds: a resource with what is expanded in it, an object of resources by path, or a list of
    /// resources. What is there already stays; other content under the same path is counted.
    void add(const std::string& name, std::string_view bytes);

    /// References that lead nowhere, each with the name of the member that has it ("Memory").
    const std::map<std::string, std::string>& missing() const noexcept { return m_missing; }

    bool isEmpty() const noexcept { return m_resources.empty(); }

    /// Null when there is none.
    const boost::json::object* find(std::string_view path) const;

    /// What the member of that name refers to or holds; null when there is none. One that leads nowhere is counted.
    const boost::json::object* follow(const boost::json::object& owner, std::string_view name);

    /// The members of the collection, or the entries of the list, that the member of that name refers to or holds, each
    /// once. A collection that is not in the mirror has the resources directly below its path.
    std::vector<RedfishPart> members(const boost::json::object& owner, std::string_view name);

    /// The members of the collection at a path, which is called that name where it is referred to. One that is not
    /// there is counted if it is expected.
    std::vector<RedfishPart> collection(std::string_view path, std::string_view name, bool isExpected = true);

private:
    void harvest(const boost::json::value& value, const std::string& path, bool isFile);
    void harvestInner(const boost::json::value& value);
    void keep(const std::string& path, const boost::json::object& resource);
    const boost::json::object* resolved(const boost::json::value& reference, std::string_view name);
    void noteMissing(const std::string& path, std::string_view name);
    std::vector<RedfishPart> below(std::string_view path) const;
    void addMembers(const boost::json::value* members, std::string_view name, std::vector<RedfishPart>& parts);

    DamageList& m_damage;
    std::deque<boost::json::value> m_documents;
    std::map<std::string, const boost::json::object*, std::less<>> m_resources;
    std::map<std::string, std::string> m_missing;
};

}  // namespace vrx

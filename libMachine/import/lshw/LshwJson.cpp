/// The text is mended first (JsonMending.h), then parsed event by event, so that everything before a place that does
/// not parse, or before an end that comes too early, is read. Texts count when they are whole.

#include <boost/json/basic_parser_impl.hpp>
#include <string>
#include <vector>

#include "libMachine/import/Converters.h"
#include "libMachine/import/lshw/LshwTree.h"
#include "libMachine/import/mending/JsonMending.h"

namespace vrx {

namespace {

namespace json = boost::json;

/// Fills the tree while the parser goes over the text.
class NodeHandler {
public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    explicit NodeHandler(LshwTree& tree) : m_tree(tree) {}

    bool on_document_begin(json::error_code&) { return true; }
    bool on_document_end(json::error_code&) { return true; }

    bool on_object_begin(json::error_code&) {
        const Level outer = top();
        if (outer.part == Part::Nodes) {
            m_levels.push_back({Part::Node, m_tree.add(outer.node)});
        } else if (outer.part == Part::Node && m_key == "configuration") {
            m_levels.push_back({Part::Settings, outer.node});
        } else if (outer.part == Part::Node && m_key == "capabilities") {
            m_levels.push_back({Part::Capabilities, outer.node});
        } else {
            m_levels.push_back({Part::Other, outer.node});
        }
        return true;
    }
    bool on_object_end(std::size_t, json::error_code&) { return leave(); }

    bool on_array_begin(json::error_code&) {
        const Level outer = top();
        if (outer.part == Part::Nodes || (outer.part == Part::Node && m_key == "children")) {
            m_levels.push_back({Part::Nodes, outer.node});
        } else if (outer.part == Part::Node && m_key == "logicalname") {
            m_levels.push_back({Part::Names, outer.node});
        } else {
            m_levels.push_back({Part::Other, outer.node});
        }
        return true;
    }
    bool on_array_end(std::size_t, json::error_code&) { return leave(); }

    bool on_key_part(json::string_view text, std::size_t, json::error_code&) { return gather(text); }
    bool on_key(json::string_view text, std::size_t, json::error_code&) {
        gather(text);
        m_key = std::move(m_text);
        m_text.clear();
        if (top().part == Part::Capabilities) {
            node().capabilities.push_back(m_key);
        }
        return true;
    }

    bool on_string_part(json::string_view text, std::size_t, json::error_code&) { return gather(text); }
    bool on_string(json::string_view text, std::size_t, json::error_code&) { return gather(text) && takeValue(); }
    bool on_number_part(json::string_view text, json::error_code&) { return gather(text); }
    bool on_int64(std::int64_t, json::string_view text, json::error_code&) { return gather(text) && takeValue(); }
    bool on_uint64(std::uint64_t, json::string_view text, json::error_code&) { return gather(text) && takeValue(); }
    bool on_double(double, json::string_view text, json::error_code&) { return gather(text) && takeValue(); }
    bool on_bool(bool value, json::error_code&) { return gather(value ? "true" : "false") && takeValue(); }
    bool on_null(json::error_code&) { return true; }
    bool on_comment_part(json::string_view, json::error_code&) { return true; }
    bool on_comment(json::string_view, json::error_code&) { return true; }

    /// The parser stopped before the end.
    void cutOff() {
        const std::size_t open = top().node;
        if (open != LshwNode::NONE) {
            m_tree.cutOff(open);
        }
    }

private:
    enum class Part : std::uint8_t { Nodes, Node, Settings, Capabilities, Names, Other };
    struct Level {
        Part part = Part::Nodes;
        std::size_t node = LshwNode::NONE;
    };

    Level top() const { return m_levels.empty() ? Level() : m_levels.back(); }
    LshwNode& node() { return m_tree.nodes[top().node]; }

    bool leave() {
        m_levels.pop_back();
        return true;
    }

    bool gather(std::string_view text) {
        m_text.append(text);
        return true;
    }

    bool takeValue() {
        std::string value = std::move(m_text);
        m_text.clear();
        switch (top().part) {
            case Part::Node: node().set(m_key, std::move(value)); break;
            case Part::Settings: node().settings.emplace_back(m_key, std::move(value)); break;
            case Part::Names: node().logicalNames.push_back(std::move(value)); break;
            default: break;
        }
        return true;
    }

    LshwTree& m_tree;
    std::vector<Level> m_levels;
    std::string m_key;
    std::string m_text;
};

}  // namespace

bool isLshwJson(const RecordingStart& start) {
    const auto holds = [&start](std::string_view key) {
        return start.json().find(key) != std::string_view::npos;
    };
    return holds("\"class\"") && (holds("\"id\"") || holds("\"claimed\""));
}

void readLshwJson(std::string_view text, LshwTree& tree, DamageList& damage) {
    static constexpr std::size_t DEEPEST = 512;
    json::parse_options options;
    options.max_depth = DEEPEST;
    options.allow_trailing_commas = true;
    options.allow_invalid_utf8 = true;
    const std::string mended = mendedJson(text, damage);
    json::basic_parser<NodeHandler> parser(options, tree);
    json::error_code error;
    parser.write_some(false, mended.data(), mended.size(), error);
    if (error) {
        parser.handler().cutOff();
        damage.add(error == json::error::incomplete ? DamageKind::JsonCutOff : DamageKind::JsonNotParsed);
    }
}

}  // namespace vrx

#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"
#include "libReport/explain/ElementStory.h"
#include "libReport/faults/DifferenceText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/TextPieces.h"
#include "libReport/writers/PlacedLines.h"

namespace vrx {

namespace {

class StoryWriter {
public:
    StoryWriter(const ElementStory& story, const std::string& file, const TextFormat& format)
        : m_story(story), m_lines(file, format) {}

    std::string write() {
        m_lines.wrapped(0, m_lines.placeText(m_story.place) + "  " + faultTitleOf(m_story.asked), Style::Bold);
        m_lines.wrapped(2, answer());
        writeRefusal();
        for (const TriedDevice& tried : m_story.tried) {
            writeTried(tried);
        }
        return m_lines.take();
    }

private:
    std::string answer() const {
        const std::string tried = "; " + counted(m_story.tried.size(), "device") + " tried";
        if (m_story.isForbidden) {
            return "it stands in a <not>: such a device must not be there" + tried;
        }
        return (m_story.isSatisfied ? "it has its device" : "it has no device") + tried;
    }

    void writeRefusal() {
        if (!m_story.refusal) {
            return;
        }
        std::string text = "none could be tried: " + printable(m_story.refusal->words);
        const char* separator = "; there are ";
        for (const String& present : m_story.refusal->present) {
            text += separator + printableValue(present);
            separator = ", ";
        }
        m_lines.wrapped(2, text + (m_story.refusal->hasMorePresent ? ", ..." : ""));
    }

    void writeTried(const TriedDevice& tried) {
        const bool isMine = tried.holder == m_story.place;
        m_lines.wrapped(2, deviceTitle(tried.device) + ": " + fate(tried), isMine ? Style::Good : Style::Plain);
        for (const DifferenceLine& line : differenceLines(tried.differences)) {
            m_lines.placed(4, line.difference.place, sentenceOf(line));
        }
    }

    std::string fate(const TriedDevice& tried) const {
        const std::string meets = tried.differences.empty() ? "meets everything" : "fails";
        if (!tried.holder) {
            return meets + ", and no element has it";
        }
        return tried.holder == m_story.place ? meets + ", and this element has it"
                                             : meets + ", and " + m_lines.placeText(*tried.holder) + " has it";
    }

    const ElementStory& m_story;
    PlacedLines m_lines;
};

}  // namespace

std::string storyText(const ElementStory& story, const std::string& file, const TextFormat& format) {
    return StoryWriter(story, file, format).write();
}

}  // namespace vrx

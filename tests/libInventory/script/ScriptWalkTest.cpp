#include "libInventory/script/ScriptWalk.h"

#include <gmock/gmock.h>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/script/OrInsidePart.h"
#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptElement.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using vocabulary::ElementKind;

/// A script that stays parsed as long as it is walked over.
struct Script {
    explicit Script(const String& content) {
        EXPECT_TRUE(document.Parse(concat(u"<inventory-check>", content, u"</inventory-check>"))) << content.toUtf8();
    }
    const XmlElement& root() const { return *document.RootElement(); }

    XmlDocument document;
};

/// "depth name", then what it lies in: p(art), a(lternative), h(older), v(alue), and a ! for each `not`.
std::string told(const ScriptPlace& place) {
    std::string text = std::to_string(place.depth) + " " + String(place.element->Name()).toUtf8() + " ";
    text += place.part ? "p" : "";
    text += place.alternative ? "a" : "";
    text += place.holder ? "h" : "";
    text += place.property ? "v" : "";
    return text + std::string(place.nots, '!') + std::string(place.notsInHolder, '?');
}

std::vector<std::string> walked(const Script& script, ScriptWalk::Extent extent) {
    std::vector<std::string> places;
    for (ScriptWalk walk(script.root(), extent); walk; ++walk) {
        places.push_back(told(*walk));
    }
    return places;
}

TEST(ScriptWalkTest, TellsWhatAnElementLiesIn) {
    EXPECT_THAT(walked(Script(u"<part><not><device><NOT><property><value/></property></NOT></device><and/></not></part>"
                              u"<or><and><fail-on-extra><x/></fail-on-extra></and><and/></or><device/>"),
                       ScriptWalk::Extent::Everything),
                ElementsAre("0 inventory-check ", "1 part ", "2 not p", "3 device p!", "4 NOT ph!", "5 property ph!!?",
                            "6 value phv!!?", "3 and p!", "1 or ", "2 and a", "3 fail-on-extra a", "4 x ah", "2 and a",
                            "1 device "));
    EXPECT_THAT(walked(Script(String()), ScriptWalk::Extent::Everything), ElementsAre("0 inventory-check "));
}

TEST(ScriptWalkTest, GoesWhereACheckLooks) {
    EXPECT_THAT(walked(Script(u"<testset><or/></testset><gadget><device/></gadget><property><value/></property>"
                              u"<device><device><property/></device><part><property/></part>"
                              u"<or><property><and><x/></and></property></or></device>"
                              u"<inventory-check><error/></inventory-check>"),
                       ScriptWalk::Extent::WhereACheckLooks),
                ElementsAre("0 inventory-check ", "1 testset ", "1 gadget ", "1 property ", "1 device ", "2 device h",
                            "2 part h", "2 or h", "3 property ah", "4 and ahv", "1 inventory-check ", "2 error "));
}

TEST(ScriptWalkTest, SkipsAndStartsInside) {
    const Script script(u"<not><prat><or><device/></or></prat></not><device/>");
    std::vector<std::string> seen;
    for (ScriptWalk walk(script.root()); walk; ++walk) {
        seen.push_back(told(*walk));
        if (walk->kind == ElementKind::Not) {
            walk.skipContent();
        }
    }
    EXPECT_THAT(seen, ElementsAre("0 inventory-check ", "1 not ", "1 device "));

    ScriptPlace place = topPlace(*script.root().FirstChildElement()->FirstChildElement());
    place.kind = ElementKind::Part;
    ScriptWalk part(place, ScriptWalk::Extent::WhereACheckLooks);
    EXPECT_EQ(told(*++part), "1 or p");
    EXPECT_EQ(told(*++part), "2 device pa");
    EXPECT_FALSE(++part);
}

TEST(ScriptWalkTest, IsSafeInTheDeepestDocument) {
    String content(u"<device/>");
    for (int level = 2; level < 256; ++level) {
        content = concat(u"<not>", content, u"</not>");
    }
    const Script script(content);
    ScriptWalk walk(script.root());
    for (; walk->kind != ElementKind::Device; ++walk) {
    }
    EXPECT_EQ(walk->depth, 255U);
    EXPECT_EQ(walk->nots, 254U);
    EXPECT_FALSE(++walk);
}

TEST(ScriptContentTest, CountsWhatACheckLooksAt) {
    const Script script(
        u"<or><device><device/></device><part><not><device/></not></part></or><fail-on-extra/>"
        u"<testset><device/></testset><x><fail-on-extra/></x>");
    EXPECT_EQ(contentOf(script.root()).devices, 2U);
    EXPECT_EQ(contentOf(script.root()).extraDeviceRules, 1U);
    EXPECT_TRUE(contentOf(Script(u"<fail-on-extra/>").root()).asksForAnything());
    EXPECT_FALSE(contentOf(Script(u"<and/><testset><device/></testset>").root()).asksForAnything());
}

TEST(ScriptContentTest, FindsElementsAndNeededDevices) {
    EXPECT_TRUE(hasElement(Script(u"<x><NOT/></x>").root(), ElementKind::Not));
    EXPECT_FALSE(hasElement(Script(u"<x><and/></x>").root(), ElementKind::Not));
    EXPECT_TRUE(needsDevice(Script(u"<not/><or><part><device/></part></or>").root()));
    EXPECT_FALSE(
        needsDevice(Script(u"<not><device/></not><fail-on-extra><device/></fail-on-extra><x><device/></x>").root()));
}

TEST(ScriptWalkTest, TellsWhatAPropertyAsksFor) {
    const auto asked = [](const char16_t* property) {
        std::vector<std::string> texts;
        for (const String& value : askedValues(*Script(property).root().FirstChildElement())) {
            texts.push_back(value.toUtf8());
        }
        return texts;
    };
    EXPECT_THAT(asked(u"<property value='a%u002Eb'/>"), ElementsAre("a.b"));
    EXPECT_THAT(asked(u"<property value='x'><value value='a'/><error>e</error><v/></property>"), ElementsAre("a", ""));
    EXPECT_THAT(asked(u"<property value='x'><error>e</error></property>"), ElementsAre("x"));
    EXPECT_THAT(asked(u"<property/>"), ElementsAre());
}

}  // namespace
}  // namespace vrx

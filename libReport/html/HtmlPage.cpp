#include "libReport/html/HtmlPage.h"

#include <string>

#include "libReport/html/HtmlAssets.h"

namespace vrx {

namespace {

const HtmlPageAssets CHECK_PAGE{{}, {}, HTML_SCRIPT, HTML_SCRIPT_HASH};

std::string source(std::string_view hash) { return hash.empty() ? "" : " 'sha256-" + std::string(hash) + "'"; }

std::string policy(const HtmlPageAssets& assets) {
    return "default-src 'none'; style-src" + source(HTML_STYLE_HASH) + source(assets.styleHash) + "; script-src" +
           source(assets.scriptHash) + "; base-uri 'none'; form-action 'none'";
}

void writeMeta(HtmlWriter& html, std::string_view name, std::string_view content) {
    html.voidElement("meta").attribute("name", name).attribute("content", content);
}

}  // namespace

void beginPage(HtmlWriter& html, std::string_view title) { beginPage(html, title, CHECK_PAGE); }

void endPage(HtmlWriter& html) { endPage(html, CHECK_PAGE); }

void beginPage(HtmlWriter& html, std::string_view title, const HtmlPageAssets& assets) {
    html.raw("<!DOCTYPE html>\n").begin("html").attribute("lang", "en").begin("head");
    html.voidElement("meta").attribute("charset", "utf-8");
    html.voidElement("meta").attribute("http-equiv", "Content-Security-Policy").attribute("content", policy(assets));
    writeMeta(html, "viewport", "width=device-width, initial-scale=1");
    writeMeta(html, "color-scheme", "light dark");
    writeMeta(html, "referrer", "no-referrer");
    html.element("title", "", title);
    html.begin("style").raw(HTML_STYLE).end();
    if (!assets.style.empty()) {
        html.begin("style").raw(assets.style).end();
    }
    html.end().raw("\n");
    html.begin("body");
}

void endPage(HtmlWriter& html, const HtmlPageAssets& assets) {
    html.begin("script").raw(assets.script).end().end().end().raw("\n");
}

void writeSearch(HtmlWriter& html) {
    html.begin("form", "search").attribute("role", "search");
    html.begin("label").attribute("for", "search").text("Search").end();
    html.voidElement("input").attribute("type", "search").attribute("id", "search");
    html.attribute("placeholder", "place, model, serial number ...");
    html.begin("span").attribute("id", "found").attribute("aria-live", "polite").end();
    html.end().raw("\n");
}

}  // namespace vrx

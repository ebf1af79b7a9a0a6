#include "libReport/html/CheckSections.h"
#include "libReport/html/HtmlPage.h"
#include "libReport/writers/Writers.h"

namespace vrx {

std::string checkHtml(const CheckReport& report, const TextFormat&) {
    HtmlWriter html;
    beginPage(html, std::string(nameOf(report.verdict)) + ": " + report.headline);
    writeVerdict(html, report);
    html.begin("main");
    writeSearch(html);
    writeFaults(html, report);
    writeWaivers(html, report);
    writeLimits(html, report);
    writeMachine(html, report);
    writeScript(html, report);
    html.end();
    endPage(html);
    return html.take();
}

}  // namespace vrx

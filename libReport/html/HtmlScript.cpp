#include "libReport/html/HtmlAssets.h"

namespace vrx {

const std::string_view HTML_SCRIPT = R"js(
"use strict";
const field = document.getElementById("search");
const count = document.getElementById("found");
const entries = Array.from(document.querySelectorAll("[data-entry]"));
let texts = null;

function search() {
    texts = texts || entries.map(entry => entry.textContent.toLowerCase());
    const words = field.value.toLowerCase().split(/\s+/).filter(word => word !== "");
    let shown = 0;
    entries.forEach((entry, at) => {
        const fits = words.every(word => texts[at].includes(word));
        entry.hidden = !fits;
        shown += fits ? 1 : 0;
    });
    count.textContent = words.length === 0 ? "" : shown + " of " + entries.length + " entries";
}

function open(element) {
    for (let each = element; each !== null; each = each.parentElement) {
        if (each.localName === "details") {
            each.open = true;
        }
    }
}

function reveal() {
    const element = location.hash === "" ? null : document.getElementById(location.hash.slice(1));
    if (element !== null) {
        open(element);
        element.scrollIntoView();
    }
}

field.addEventListener("input", search);
field.form.addEventListener("submit", event => event.preventDefault());
addEventListener("hashchange", reveal);
addEventListener("beforeprint", () => document.querySelectorAll("details").forEach(each => { each.open = true; }));
search();
reveal();
)js";

const std::string_view HTML_SCRIPT_HASH = "VX/HVphAM7p99dqJSaG+YAr6vcaWq1AgvAzwfR6/jr4=";

}  // namespace vrx

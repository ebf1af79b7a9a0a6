#include "libFleet/html/FleetAssets.h"

namespace vrx {

const std::string_view FLEET_SCRIPT = R"js(
"use strict";
const FILE = 0, MAKER = 1, MODEL = 2, SERIAL = 3, HOST = 4, SCRIPT = 5, HEADLINE = 6, VERDICT = 7, GROUP = 8, FAULTS = 9;
const PAGE = 100;
const COLUMNS = [["Verdict", VERDICT], ["Machine", FILE], ["Model", MODEL], ["Serial number", SERIAL],
                 ["What is wrong", HEADLINE]];
const WORST = ["failed", "undetermined", "unreadable", "passed"];
const rows = JSON.parse(document.getElementById("rows").textContent);
const wanted = {words: [], verdict: null, group: null, fault: null, column: VERDICT, descending: false};
let texts = null;
let shown = [];
let first = 0;
const opened = new Set();

function make(tag, attributes, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (name === "onclick") {
            element.addEventListener("click", value);
        } else {
            element.setAttribute(name, value);
        }
    }
    element.append(...children);
    return element;
}

function textOf(at) {
    const row = rows[at];
    return row.slice(0, GROUP).concat(row[FAULTS]).join("\n").toLowerCase();
}

function hasFault(row, title) {
    for (let i = 2; i < row[FAULTS].length; i += 3) {
        if (row[FAULTS][i] === title) {
            return true;
        }
    }
    return false;
}

function fits(at) {
    const row = rows[at];
    return (wanted.verdict === null || row[VERDICT] === wanted.verdict) &&
        (wanted.group === null || row[GROUP] === wanted.group) &&
        (wanted.fault === null || hasFault(row, wanted.fault)) &&
        wanted.words.every(word => texts[at].includes(word));
}

function keyOf(row) {
    return wanted.column === VERDICT ? WORST.indexOf(row[VERDICT])
        : (wanted.column === MODEL ? row[MAKER] + " " + row[MODEL] : row[wanted.column]);
}

function select() {
    texts = texts || (wanted.words.length > 0 ? rows.map((row, at) => textOf(at)) : null);
    shown = rows.map((row, at) => at).filter(fits);
    const sign = wanted.descending ? -1 : 1;
    const keys = rows.map(keyOf);
    shown.sort((a, b) => sign * (keys[a] < keys[b] ? -1 : keys[a] > keys[b] ? 1 : 0) || a - b);
    first = 0;
    draw();
}

function badge(verdict) {
    const look = {passed: "good", failed: "bad"}[verdict] || "doubt";
    return make("span", {"class": "badge " + look}, verdict);
}

function machineName(row) {
    const name = make("td", {}, row[FILE]);
    if (row[HOST] !== "") {
        name.append(make("span", {"class": "example"}, row[HOST]));
    }
    return name;
}

function faultsRow(at) {
    const row = rows[at];
    const list = make("ul", {});
    for (let i = 0; i < row[FAULTS].length; i += 3) {
        list.append(make("li", {}, row[FAULTS][i + 1]));
    }
    const script = row[SCRIPT] === "" ? "" : "Script " + row[SCRIPT];
    const cell = make("td", {"colspan": COLUMNS.length + 1}, row[FAULTS].length > 0 ? list : row[HEADLINE],
                      make("span", {"class": "example"}, script));
    return make("tr", {"class": "faults", "id": "faults-" + at}, cell);
}

function toggle(at) {
    opened.has(at) ? opened.delete(at) : opened.add(at);
    draw();
    document.querySelector("[data-row='" + at + "']").focus();
}

function machineRow(at) {
    const row = rows[at];
    const isOpen = opened.has(at);
    const button = make("button", {"type": "button", "class": "open", "data-row": at, "aria-expanded": isOpen,
                                   "aria-label": "Faults of " + row[FILE], "onclick": () => toggle(at)}, isOpen ? "−" : "+");
    return make("tr", {}, make("td", {"class": "open"}, button), make("td", {"class": "state"}, badge(row[VERDICT])),
                machineName(row), make("td", {}, (row[MAKER] + " " + row[MODEL]).trim()), make("td", {}, row[SERIAL]),
                make("td", {}, row[HEADLINE]));
}

function draw() {
    const page = shown.slice(first, first + PAGE);
    body.replaceChildren(...page.flatMap(at => opened.has(at) ? [machineRow(at), faultsRow(at)] : [machineRow(at)]));
    count.textContent = shown.length === 0 ? "no machine" :
        (first + 1) + " to " + (first + page.length) + " of " + shown.length + (shown.length === rows.length ? "" :
        " (" + rows.length + " in all)") + (shown.length === 1 ? " machine" : " machines");
    before.disabled = first === 0;
    after.disabled = first + PAGE >= shown.length;
    for (const [button, column] of sorters) {
        const isChosen = column === wanted.column;
        button.parentElement.setAttribute("aria-sort", isChosen ? (wanted.descending ? "descending" : "ascending") : "none");
        button.textContent = button.dataset.name + (isChosen ? (wanted.descending ? " ↓" : " ↑") : "");
    }
    for (const button of document.querySelectorAll("[data-verdict], [data-fault], [data-group]")) {
        const {verdict, fault, group} = button.dataset;
        button.setAttribute("aria-pressed", verdict !== undefined ? verdict === wanted.verdict :
            fault !== undefined ? fault === wanted.fault : Number(group) === wanted.group);
    }
}

function turn(pages) {
    first += pages * PAGE;
    draw();
}

function sortBy(column) {
    wanted.descending = wanted.column === column && !wanted.descending;
    wanted.column = column;
    select();
}

function pick(name, value) {
    wanted[name] = wanted[name] === value ? null : value;
    select();
}

const field = make("input", {"type": "search", "id": "search", "placeholder": "machine, model, serial number, fault ..."});
const count = make("span", {"id": "found", "aria-live": "polite"});
const form = make("form", {"class": "search", "role": "search"}, make("label", {"for": "search"}, "Search"), field, count);
const sorters = COLUMNS.map(([name, column]) =>
    [make("button", {"type": "button", "data-name": name, "onclick": () => sortBy(column)}, name), column]);
const heads = sorters.map(([button, column]) =>
    make("th", column === VERDICT ? {"scope": "col", "class": "state"} : {"scope": "col"}, button));
const body = make("tbody", {});
const before = make("button", {"type": "button", "id": "before", "onclick": () => turn(-1)}, "Back");
const after = make("button", {"type": "button", "id": "after", "onclick": () => turn(1)}, "Next");
document.getElementById("table").append(form,
    make("table", {"class": "machines"}, make("thead", {}, make("tr", {}, make("th", {"class": "open"}, ""), ...heads)), body),
    make("nav", {"class": "pages", "aria-label": "Pages"}, before, after));
document.querySelector("main").prepend(document.getElementById("summary"));

field.addEventListener("input", () => {
    wanted.words = field.value.toLowerCase().split(/\s+/).filter(word => word !== "");
    select();
});
form.addEventListener("submit", event => event.preventDefault());
for (const button of document.querySelectorAll("#summary button")) {
    const {verdict, fault, group} = button.dataset;
    button.addEventListener("click", () => verdict !== undefined ? pick("verdict", verdict) :
        fault !== undefined ? pick("fault", fault) : pick("group", Number(group)));
}
document.title = document.querySelector("h1").textContent;
select();
)js";

const std::string_view FLEET_SCRIPT_HASH = "jsUBSM+e2KfFX8Rye6h1jm7RIX6WQVLBbzNaxzCfJrU=";

}  // namespace vrx

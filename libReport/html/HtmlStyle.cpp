#include "libReport/html/HtmlAssets.h"

namespace vrx {

const std::string_view HTML_STYLE = R"css(
:root {
    color-scheme: light dark;
    --page: #f6f7f9; --card: #ffffff; --ink: #1b1f24; --dim: #57606a; --line: #d0d7de;
    --bad: #b3261e; --bad-soft: #fdecea; --good: #1a6e37; --good-soft: #e6f4ea; --doubt: #7a5200; --doubt-soft: #fff4d6;
    --link: #0b57d0;
}
@media (prefers-color-scheme: dark) {
    :root {
        --page: #14171b; --card: #1e2227; --ink: #e6e9ed; --dim: #a2abb5; --line: #3a424b;
        --bad: #ff8a80; --bad-soft: #3b1f1e; --good: #7fd99a; --good-soft: #1a3323; --doubt: #f2c766; --doubt-soft: #38300f;
        --link: #8ab4f8;
    }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--page); color: var(--ink); font: 16px/1.45 system-ui, sans-serif; }
header, main { max-width: 70rem; margin: 0 auto; padding: 1rem; }
h1 { font-size: 1.35rem; margin: .5rem 0; overflow-wrap: anywhere; }
h2 { font-size: 1.1rem; margin: 2rem 0 .6rem; }
h3 { font-size: .95rem; margin: 1rem 0 .4rem; color: var(--dim); }
a { color: var(--link); }
:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; }
[hidden] { display: none !important; }
.skip { position: absolute; left: -100rem; }
.skip:focus { left: 1rem; top: 1rem; background: var(--card); padding: .5rem; z-index: 1; }
.badge { display: inline-block; padding: .1rem .55rem; border-radius: 1rem; font-size: .8rem; font-weight: 600; }
.bad { color: var(--bad); background: var(--bad-soft); }
.good { color: var(--good); background: var(--good-soft); }
.doubt { color: var(--doubt); background: var(--doubt-soft); }
.verdict { font-size: 1rem; }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .15rem 1rem; margin: .5rem 0; }
dt { color: var(--dim); }
dd { margin: 0; overflow-wrap: anywhere; }
.search { display: flex; flex-wrap: wrap; gap: .5rem; align-items: baseline; position: sticky; top: 0; z-index: 1;
    background: var(--page); padding: .6rem 0; }
.search input { flex: 1 1 14rem; max-width: 28rem; min-width: 0; padding: .45rem .6rem; font: inherit; color: inherit;
    background: var(--card); border: 1px solid var(--line); border-radius: .4rem; }
.card { background: var(--card); border: 1px solid var(--line); border-left: .3rem solid var(--bad);
    border-radius: .4rem; margin: .5rem 0; scroll-margin-top: 4rem; }
.card.doubt { border-left-color: var(--doubt); color: inherit; background: var(--card); }
.card.waived { border-left-color: var(--line); }
.card > summary { padding: .6rem .8rem; cursor: pointer; overflow-wrap: anywhere; }
.card > div { padding: 0 .8rem .8rem; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; margin: .4rem 0; }
th, td { text-align: left; vertical-align: top; padding: .25rem .8rem .25rem 0; border-bottom: 1px solid var(--line);
    overflow-wrap: anywhere; }
th { color: var(--dim); font-weight: 600; }
code { font: .9em ui-monospace, monospace; overflow-wrap: anywhere; }
.places { display: grid; grid-template-columns: repeat(auto-fill, minmax(9.5rem, 1fr)); gap: .4rem; padding: 0; margin: 0;
    list-style: none; }
.places li { background: var(--card); border: 1px solid var(--line); border-radius: .4rem; padding: .4rem .5rem;
    font-size: .85rem; overflow-wrap: anywhere; }
.places li.faulty { border: 2px solid var(--bad); background: var(--bad-soft); }
.places li.empty { border-style: dashed; }
.places b { display: block; }
.places span { display: block; color: var(--dim); }
.tree ul { list-style: none; margin: 0; padding-left: 1rem; border-left: 1px solid var(--line); }
.tree > ul { padding-left: 0; border: 0; }
.tree li { margin: .2rem 0; overflow-wrap: anywhere; }
.tree summary { cursor: pointer; }
@media (max-width: 30rem) {
    dl { grid-template-columns: 1fr; }
    dt { margin-top: .3rem; }
    header, main { padding: .6rem; }
}
@media print {
    .search, .skip { display: none; }
    body { background: #fff; color: #000; }
    .card, .places li { break-inside: avoid; }
}
)css";

const std::string_view HTML_STYLE_HASH = "xLwzSQCawHbBWxtGSCgLoq+Qk091wAUO6XP9O+0rA+g=";

}  // namespace vrx

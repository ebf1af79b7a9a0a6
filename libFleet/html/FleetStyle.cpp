#include "libFleet/html/FleetAssets.h"

namespace vrx {

const std::string_view FLEET_STYLE = R"css(
main { max-width: 90rem; }
.counts { display: flex; flex-wrap: wrap; gap: .5rem; margin: .5rem 0; }
button { font: inherit; color: inherit; background: var(--card); border: 1px solid var(--line); border-radius: .4rem;
    padding: .3rem .7rem; cursor: pointer; }
button[aria-pressed=true] { border-color: var(--link); box-shadow: inset 0 0 0 1px var(--link); }
button:disabled { color: var(--dim); cursor: default; }
.count b { font-size: 1.3rem; }
.count[data-verdict=failed] b { color: var(--bad); }
.count[data-verdict=passed] b { color: var(--good); }
.count[data-verdict=undetermined] b, .count[data-verdict=unreadable] b { color: var(--doubt); }
.note { color: var(--doubt); background: var(--doubt-soft); border-radius: .4rem; padding: .4rem .8rem; }
.example { display: block; color: var(--dim); font-size: .85rem; }
#summary details > summary { cursor: pointer; font-weight: 600; margin: .6rem 0; }
#summary ul { margin: 0; padding-left: 1.1rem; }
.machines { width: 100%; table-layout: fixed; background: var(--card); }
.machines th button { border: 0; background: none; padding: 0; font-weight: 600; color: inherit; text-align: left; }
.machines th, .machines td { padding: .3rem .6rem; }
.machines .open { width: 2.6rem; padding-right: 0; }
.machines .state { width: 8.5rem; }
.machines th:nth-child(3) { width: 26%; }
.machines th:nth-child(4) { width: 16%; }
.machines th:nth-child(5) { width: 11%; }
.machines td .open { padding: 0 .5rem; }
.machines .faults td { background: var(--page); }
.faults ul { margin: .3rem 0; padding-left: 1.1rem; }
.pages { display: flex; flex-wrap: wrap; gap: .6rem; align-items: center; margin: .6rem 0; }
@media (max-width: 50rem) {
    .machines thead { position: absolute; left: -100rem; }
    .machines, .machines tbody, .machines tr, .machines td { display: block; width: auto !important; }
    .machines td { border: 0; padding: .1rem .6rem; }
    .machines td.open { float: right; }
    .machines tr { border-bottom: 1px solid var(--line); padding: .4rem 0; }
}
)css";

const std::string_view FLEET_STYLE_HASH = "+ESlwiuBZTmf3spa59ublOGjmcopi00iMynglxtKxNw=";

}  // namespace vrx

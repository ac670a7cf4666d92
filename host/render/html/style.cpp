#include "host/render/html/style.h"

namespace npar_host {

std::string_view PlotStyle() {
  return R"css(
:root {
  color-scheme: light dark;
  --page: #f5f6f8; --card: #ffffff; --ink: #1b2330; --quiet: #566173; --line: #d5dae2;
  --faint: #e9ecf1; --link: #0b57a8; --first: #2a6db5; --second: #b3560b; --zero: #6b4aa0;
  --reject: #9a1f3c; --reject-back: #fbe9ed; --retain: #17633a; --retain-back: #e6f4ec;
  --note-back: #eef3fa; --warning: #7a4a00; --warning-back: #fdf3df; --band: #f0f3f8;
}
svg text { font-size: 12px; fill: var(--ink); }
svg .tick { fill: var(--quiet); font-size: 11px; }
svg .title { fill: var(--quiet); }
svg .value { font-weight: 600; }
svg .halo { paint-order: stroke; stroke: var(--card); stroke-width: 4px; }
svg .axis { stroke: var(--quiet); stroke-width: 1; }
svg .grid { stroke: var(--line); stroke-width: 1; stroke-dasharray: 1 3; }
svg .first { fill: var(--first); stroke: none; }
svg .second { fill: var(--second); stroke: none; }
svg .zero { fill: var(--zero); stroke: var(--card); }
svg .hollow { fill: var(--card); stroke: var(--second); stroke-width: 2; }
svg .line { fill: none; stroke-width: 2; stroke-linejoin: round; }
svg .first.line { stroke: var(--first); }
svg .second.line { stroke: var(--second); }
svg .dashed { stroke-dasharray: 5 4; }
svg .marker { stroke: var(--ink); stroke-width: 1.5; }
svg .marker.thick { stroke-width: 4; }
svg .mark { fill: var(--second); stroke: var(--card); stroke-width: 1.5; }
svg .whisker { stroke: var(--ink); stroke-width: 1.5; }
svg .box { fill: var(--first); fill-opacity: .3; stroke: var(--first); stroke-width: 1.5; }
svg .median { stroke: var(--ink); stroke-width: 3; }
svg .values { fill: none; stroke: var(--quiet); stroke-opacity: .6; stroke-width: 5;
  stroke-linecap: round; }
svg .slope { fill: none; stroke: var(--quiet); stroke-opacity: .5; stroke-width: 1; }
svg .slope.up { stroke: var(--first); stroke-opacity: .7; }
svg .slope.down { stroke: var(--second); stroke-opacity: .7; }
svg .outlier { fill: none; stroke: var(--second); stroke-width: 1.5; }
svg .leader { stroke: var(--line); }
svg .node { fill: var(--card); stroke: var(--ink); stroke-width: 2.5; }
svg .edge { fill: none; stroke: var(--quiet); stroke-width: 1; }
svg .edge.significant { stroke: var(--second); stroke-width: 3; }
svg .cell { fill: var(--first); fill-opacity: 0; stroke: var(--line); }
svg .cell.shade1 { fill-opacity: .12; }
svg .cell.shade2 { fill-opacity: .28; }
svg .cell.shade3 { fill-opacity: .8; }
svg .cell.shade4 { fill-opacity: 1; }
svg .cell.change { stroke: var(--second); stroke-width: 2; }
svg .pair { fill: var(--second); stroke: none; }
svg .pair.strong { fill-opacity: 1; }
svg .pair.clear { fill-opacity: .6; }
svg .pair.plain { fill-opacity: .3; }
svg .pair.none { fill: var(--faint); }
svg .onshade { fill: var(--card); }
)css";
}

std::string_view PageStyle() {
  return R"css(
@media (prefers-color-scheme: dark) {
  :root {
    --page: #12161d; --card: #1a202a; --ink: #e6eaf1; --quiet: #a3aebf; --line: #39424f;
    --faint: #262e3a; --link: #8cc0ff; --first: #6aa9ec; --second: #eb9a52; --zero: #b79be6;
    --reject: #ff9db1; --reject-back: #3c1d27; --retain: #86d8a7; --retain-back: #17352450;
    --note-back: #1d2836; --warning: #f3c777; --warning-back: #372b14; --band: #202835;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; scroll-padding-top: 1rem; }
body {
  margin: 0; background: var(--page); color: var(--ink);
  font: 1rem/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", "DejaVu Sans", sans-serif;
  overflow-wrap: anywhere;
}
header, main, footer { max-width: 68rem; margin: 0 auto; padding: 0 1.25rem; }
header { padding-top: 2rem; }
h1 { font-size: 1.75rem; line-height: 1.2; margin: 0 0 .75rem; }
h2 { font-size: 1.25rem; line-height: 1.3; margin: 0 0 .5rem; }
h3 { font-size: 1.05rem; margin: 0; }
p { margin: 0 0 .5rem; }
a { color: var(--link); text-underline-offset: .15em; }
:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; border-radius: 4px; }
.skip { position: absolute; left: -100rem; top: .5rem; padding: .5rem 1rem; background: var(--card);
  z-index: 1; }
.skip:focus { left: .5rem; }
.facts { display: grid; grid-template-columns: repeat(auto-fit, minmax(8.5rem, 1fr)); gap: .75rem 1.5rem;
  margin: 0 0 1.5rem; }
.facts dt { color: var(--quiet); font-size: .85rem; }
.facts dd { margin: 0; font-weight: 600; }
section.test, section.overview, #fields { background: var(--card); border: 1px solid var(--line);
  border-radius: .6rem; padding: 1.25rem; margin: 0 0 1.25rem; }
/* What is out of sight is laid out when it comes into it: pages of hundreds of tests open at once. */
.many section.test, .many section.field { content-visibility: auto; contain-intrinsic-size: auto 50rem; }
section.field { border-top: 1px solid var(--faint); padding-top: 1rem; margin-top: 1rem; }
.hypothesis { font-size: 1.05rem; }
.outcome { display: flex; flex-wrap: wrap; gap: .5rem .75rem; align-items: center; margin: .25rem 0; }
.decision, .kind, .note, .back, figcaption .note { color: var(--quiet); font-size: .9rem; }
.interval { display: block; }
.badge { display: inline-block; padding: .1rem .6rem; border-radius: 1rem; font-weight: 600;
  white-space: nowrap; border: 1px solid currentColor; }
.badge.reject { color: var(--reject); background: var(--reject-back); }
.badge.retain { color: var(--retain); background: var(--retain-back); }
.badge.estimate { color: var(--link); background: var(--note-back); }
.badge.unknown { color: var(--quiet); background: var(--band); }
.messages { list-style: none; padding: 0; margin: .5rem 0; }
.message { padding: .4rem .75rem; margin: 0 0 .4rem; border-left: .3rem solid var(--link);
  background: var(--note-back); font-size: .92rem; }
.message.warning { border-color: var(--warning); background: var(--warning-back); }
.message.error { border-color: var(--reject); background: var(--reject-back); }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-variant-numeric: tabular-nums; font-size: .94rem; }
caption { text-align: left; font-weight: 600; padding: .25rem 0; }
th, td { padding: .3rem .75rem; border-bottom: 1px solid var(--faint); text-align: right;
  vertical-align: top; }
th { font-weight: 500; max-width: 26rem; min-width: 4.5rem; }
th[scope=row] { min-width: 7rem; }
thead th { overflow-wrap: break-word; border-bottom: 2px solid var(--line); color: var(--quiet); font-size: .86rem;
  vertical-align: bottom; }
tbody th, thead th:first-child { text-align: left; padding-left: 0; }
tbody tr:hover { background: var(--band); }
td { white-space: nowrap; }
.list { white-space: normal; min-width: 8rem; }
table.figures { width: 100%; max-width: 34rem; }
table.overview { width: 100%; }
table.overview th, table.overview td { text-align: left; white-space: normal; }
table.overview td, table.overview thead th { padding-left: .25rem; }
table.overview thead th:first-child { padding-left: 0; }
table.overview th[scope=row] { min-width: 9rem; }
thead button { font: inherit; color: inherit; background: none; border: 0; padding: 0; cursor: pointer;
  text-align: inherit; text-decoration: underline dotted; }
th[aria-sort=ascending] button::after { content: " ↑"; }
th[aria-sort=descending] button::after { content: " ↓"; }
.tools { display: flex; flex-wrap: wrap; gap: .5rem 1.5rem; align-items: center; font-size: .92rem; }
.tools[hidden] { display: none; }
.tools input { accent-color: var(--link); font: inherit; }
.apa { border-left: .2rem solid var(--line); padding-left: .75rem; }
button.copy { font: inherit; font-size: .85rem; color: var(--link); background: var(--card); cursor: pointer;
  border: 1px solid var(--line); border-radius: .3rem; padding: 0 .5rem; }
.away { position: absolute; left: -100rem; }
table.overview .kind { display: block; }
table.overview data, table.overview td:nth-of-type(4) .kind { white-space: nowrap; }
table.overview thead th { min-width: 2.5rem; }
table.overview thead th:nth-child(2) { min-width: 6rem; }
.together { display: inline-block; }
tr.subheading th { font-weight: 600; padding-top: .75rem; }
tr.effect th, tr.effect td { background: var(--band); font-weight: 600; }
tr.effect th { padding-left: .4rem; }
tr.differs th, tr.differs td { font-weight: 600; }
table.wide tr.differs td:last-child { color: var(--reject); }
tr.foot th, tr.foot td { color: var(--quiet); border-bottom: 0; }
.member { display: inline-block; background: var(--band); border: 1px solid var(--line);
  border-radius: .3rem; padding: 0 .5rem; }
.none { color: var(--quiet); }
.results { display: grid; grid-template-columns: repeat(auto-fit, minmax(min(100%, 22rem), 1fr));
  gap: .75rem 2rem; align-items: start; grid-auto-flow: dense; margin: .75rem 0; }
.results > * { min-width: 0; }
.results > .wide { grid-column: 1 / -1; }
figure { margin: 0; max-width: 35rem; min-width: 0; }
figure.wide { max-width: none; }
figure.wide svg { min-width: 44rem; }
figcaption { font-size: .92rem; font-weight: 600; }
figcaption .note { display: block; font-weight: 400; }
details { font-size: .9rem; margin-top: .25rem; }
summary { cursor: pointer; color: var(--link); padding: .15rem 0; width: fit-content; }
details .scroll { max-height: 20rem; overflow-y: auto; }
svg { display: block; width: 100%; height: auto; }
footer { color: var(--quiet); font-size: .85rem; padding-bottom: 2rem; }
@media (max-width: 56rem) {
  table.overview td:nth-of-type(4) .kind { white-space: normal; overflow-wrap: break-word; }
  table.overview th[scope=row] { min-width: 7rem; }
}
@media (max-width: 40rem) {
  header, main, footer { padding-left: .75rem; padding-right: .75rem; }
  section.test, section.overview, #fields { padding: .9rem; }
  svg text { font-size: 13px; }
  svg .tick { font-size: 12px; }
  /* p and decision stand under the name of the test. */
  table.overview, table.overview caption, table.overview tbody, table.overview tr,
  table.overview th { display: block; }
  table.overview tr[hidden] { display: none; }
  table.overview thead { position: absolute; left: -100rem; }
  table.overview td { display: inline-block; border: 0; padding: .1rem .75rem .1rem 0; }
  table.overview td:empty { display: none; }
  table.overview td:nth-of-type(1) { display: block; }
  table.overview tr { border-bottom: 1px solid var(--line); padding: .4rem 0; }
  table.overview th[scope=row] { border: 0; padding: 0; max-width: none; font-weight: 600; }
  table.overview td:nth-of-type(2)::before { content: "N = "; font-style: italic; }
  table.overview td:nth-of-type(4)::before { content: "p "; font-style: italic; }
  table.overview .kind { display: inline; }
  th, td { padding: .3rem .4rem; }
  th { min-width: 3rem; }
  /* Wraps between words, never within a number. */
  table.figures td { white-space: normal; overflow-wrap: break-word; }
}
@media print {
  :root { --page: #ffffff; --card: #ffffff; --ink: #000000; --quiet: #444444; --line: #bbbbbb;
    --faint: #dddddd; --link: #0b3d78; --first: #2a6db5; --second: #b3560b; --zero: #6b4aa0;
    --reject: #9a1f3c; --retain: #17633a; --warning: #7a4a00; --band: #f0f0f0;
    --reject-back: #ffffff; --retain-back: #ffffff; --note-back: #ffffff; --warning-back: #ffffff; }
  body { font-size: 10pt; }
  table { font-size: 9pt; }
  .skip, .back, .tools, button.copy, details { display: none; }
  thead button { text-decoration: none; }
  section.test, section.overview, #fields { border: 0; padding: 0; }
  .many section.test, .many section.field { content-visibility: visible; }
  .many:not(:has(#print-all:checked)) :is(section.test, #fields) { display: none; }
  figure.wide svg { min-width: 0; }
  .scroll { overflow: visible; }
  th, td { padding: .2rem .3rem; }
  thead th { overflow-wrap: anywhere; min-width: 2.5rem; }
  th[scope=row] { min-width: 5rem; }
  table.overview th[scope=row] { min-width: 9rem; }
  table.overview thead th:nth-child(2) { min-width: 5rem; }
  table.overview .kind { font-size: 8pt; }
  .many table.overview { font-size: 8pt; line-height: 1.3; }
  .many table.overview .kind { font-size: 7pt; }
  .list { min-width: 4rem; }
  figure, tr, .message, table.subsets { break-inside: avoid; }
  h2, h3, .kind { break-after: avoid; }
  svg, .badge, tr.effect { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  .results { grid-template-columns: repeat(2, 1fr); }
}
@media (prefers-reduced-motion: no-preference) { html { scroll-behavior: smooth; } }
)css";
}

}  // namespace npar_host

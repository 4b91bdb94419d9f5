#include "page/html/style.h"

namespace velmor::page {

// A colour has a name for what it means. On paper the light ones hold whatever the screen shows.
const char* const kStyle = R"css(
:root {
  color-scheme: light dark;
  --ink: #1c2126; --soft: #59626c; --line: #d5dae0; --paper: #ffffff; --panel: #f4f6f8;
  --wave: #42688c; --pause: #dfe4ea; --data: #cbb6d6; --link: #1f5a92;
  --error: #b3261e; --warning: #8f5b00; --note: #4b6a88; --good: #22703f;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ink: #e4e8ec; --soft: #9ba5b0; --line: #363d45; --paper: #15191d; --panel: #1d2227;
    --wave: #7ba6cc; --pause: #2b323a; --data: #4b3a57; --link: #8dbbe6;
    --error: #ff8a80; --warning: #e7b55a; --note: #9dbad6; --good: #7fcf9b;
  }
}
* { box-sizing: border-box; }
html { background: var(--paper); -webkit-text-size-adjust: 100%; }
body {
  margin: 0 auto; padding: 2.2rem 1.6rem 3rem; max-width: 76rem; color: var(--ink);
  font: 0.94rem/1.45 system-ui, "Segoe UI", "Helvetica Neue", Arial, "DejaVu Sans", sans-serif;
  overflow-wrap: anywhere; font-variant-numeric: tabular-nums;
}
a { color: var(--link); text-decoration: none; }
a:hover, a:focus { text-decoration: underline; }
small { color: var(--soft); font-size: 0.82em; font-weight: 400; }
code { font: 0.88em/1.4 ui-monospace, "SF Mono", Consolas, "DejaVu Sans Mono", monospace; overflow-wrap: anywhere; }
h1 { font-size: 1.9rem; line-height: 1.2; font-weight: 650; margin: 0; }
h2 { font-size: 1.08rem; font-weight: 650; margin: 2.4rem 0 0.7rem; }
h3 { font-size: 0.94rem; font-weight: 600; margin: 0 0 0.3rem; }
p { margin: 0.3rem 0; }
figure { margin: 0; }
svg { display: block; width: 100%; }

header { display: flex; gap: 1rem 2rem; justify-content: space-between; align-items: flex-end; flex-wrap: wrap; }
.names { flex: 1 1 20rem; min-width: 0; }
.kind { color: var(--soft); font-size: 0.82rem; letter-spacing: 0.03em; }
header .performer { font-size: 1.1rem; color: var(--soft); }
.verdict { border: 1px solid currentColor; border-radius: 0.35rem; padding: 0.35rem 0.8rem; }
.verdict a { color: inherit; }
.good { color: var(--good); } .bad { color: var(--error); }

.facts { display: grid; grid-template-columns: repeat(5, 1fr); gap: 0.9rem 1.6rem; margin: 1.4rem 0 0; padding: 1rem 0 0; border-top: 1px solid var(--line); }
.facts > div { min-width: 0; }
.facts .wide { grid-column: 1 / -1; display: grid; grid-template-columns: 11rem 1fr; gap: 0 1.6rem; }
.facts .wide dd { min-width: 0; }
dt { color: var(--soft); font-size: 0.82rem; }
dd { margin: 0; }
.room { height: 0.7rem; margin: 0.25rem 0 0.3rem; }
.room ~ span { display: inline-block; margin-right: 1.2rem; }
.room .all { fill: var(--pause); } .room .fits { fill: var(--wave); }
.room .long { fill: var(--warning); } .room .over { fill: var(--error); }
.room .limit { stroke: var(--ink); stroke-width: 1.5; vector-effect: non-scaling-stroke; }

.wave { fill: var(--wave); stroke: var(--wave); stroke-width: 0.7; vector-effect: non-scaling-stroke; }
.pause { fill: var(--pause); } .data { fill: var(--data); fill-opacity: 0.9; }
.cut { fill: none; stroke: var(--ink); stroke-opacity: 0.55; stroke-width: 1; vector-effect: non-scaling-stroke; }
.sound { fill: none; stroke: var(--soft); stroke-width: 1; stroke-dasharray: 3 3; vector-effect: non-scaling-stroke; }
.mark { fill: none; stroke-width: 1.6; vector-effect: non-scaling-stroke; stroke-dasharray: 5 3; }
.mark:target { stroke-width: 4; stroke-dasharray: none; }
path.error { stroke: var(--error); } path.warning { stroke: var(--warning); } path.note { stroke: var(--note); }
.disc svg { height: 9rem; background: var(--panel); }
.disc .numbers, .disc .marks, .disc .axis { position: relative; height: 1.3rem; font-size: 0.8rem; overflow: hidden; }
.disc .numbers a { position: absolute; }
.disc .marks { height: 1.1rem; overflow: visible; }
.disc .marks a { position: absolute; width: 1rem; margin-left: -0.5rem; text-align: center; font-size: 0.75rem; }
.disc .axis span { position: absolute; color: var(--soft); white-space: nowrap; }
a.error { color: var(--error); } a.warning { color: var(--warning); } a.note { color: var(--note); }
.missing { color: var(--warning); }

table { border-collapse: collapse; width: 100%; font-size: 0.87rem; }
th, td { padding: 0.28rem 0.5rem; text-align: right; vertical-align: top; }
th { font-weight: 600; color: var(--soft); font-size: 0.8rem; vertical-align: bottom; overflow-wrap: normal; }
thead tr { border-bottom: 1px solid var(--ink); }
tbody { border-bottom: 1px solid var(--line); }
.levels tbody tr + tr, .readers tbody tr + tr { border-top: 1px solid var(--line); }
th small { display: block; }
.num { white-space: nowrap; }
.text { text-align: left; }
td.code { white-space: nowrap; font: 0.9em/1.5 ui-monospace, "SF Mono", Consolas, "DejaVu Sans Mono", monospace; }
td.track { font-weight: 650; }
.title { font-weight: 600; }
td .performer { display: block; color: var(--soft); }
.more td { color: var(--soft); }
.sum td { font-weight: 600; }
.levels td small { display: block; }
td.loud { color: var(--warning); }
tbody:target { background: var(--panel); box-shadow: inset 0.2rem 0 0 var(--link); }
.readers .error .verdict { color: var(--error); } .readers .warning .verdict { color: var(--warning); }
.readers .good { color: inherit; } .readers .good .verdict { color: var(--good); }
.readers .verdict { border: 0; border-radius: 0; padding: 0.28rem 0.5rem; white-space: nowrap; }

.strip { display: grid; grid-template-columns: 3fr 1fr 1fr; gap: 0 1rem; padding: 0.7rem 0; border-top: 1px solid var(--line); }
.strip h3 { grid-column: 1 / -1; }
.strip svg { height: 3.6rem; background: var(--panel); }
figcaption { color: var(--soft); font-size: 0.78rem; margin-top: 0.15rem; }

#findings ol { list-style: none; margin: 0; padding: 0; }
#findings li { border-left: 0.2rem solid var(--note); padding: 0.1rem 0 0.1rem 0.9rem; margin: 0 0 1rem; }
#findings li.error { border-color: var(--error); } #findings li.warning { border-color: var(--warning); }
#findings li:target { background: var(--panel); }
.words { font-weight: 600; }
.severity { font-size: 0.74rem; font-weight: 650; text-transform: uppercase; letter-spacing: 0.04em; margin-right: 0.3rem; }
.error > .words .severity { color: var(--error); } .warning > .words .severity { color: var(--warning); }
.note > .words .severity { color: var(--note); }
.where, .what { font-size: 0.87rem; } .what { color: var(--soft); }
.action::before { content: "\2192\00a0"; color: var(--soft); }
#notes ul { margin: 0; padding-left: 1.1rem; color: var(--soft); font-size: 0.87rem; }
footer { margin-top: 2.4rem; padding-top: 0.6rem; border-top: 1px solid var(--line); color: var(--soft); font-size: 0.8rem; }

@media screen and (max-width: 60rem) {
  body { padding: 1.2rem 1rem 2rem; }
  h1 { font-size: 1.5rem; }
  .facts { grid-template-columns: repeat(auto-fill, minmax(9rem, 1fr)); }
  .facts .wide { display: block; }
  .strip { grid-template-columns: 1fr 1fr; }
  .strip .whole { grid-column: 1 / -1; }
  thead { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); }
  table, tbody { display: block; }
  tr { display: flex; flex-wrap: wrap; gap: 0.1rem 1.1rem; padding: 0.45rem 0; }
  td { display: block; padding: 0; text-align: left; min-width: 0; max-width: 100%; }
  td:empty { display: none; }
  td::before { content: attr(data-name); display: block; color: var(--soft); font-size: 0.72rem; font-weight: 400; font-family: system-ui, sans-serif; }
  td.track { order: -2; min-width: 2rem; }
  td.text { flex: 1 1 calc(100% - 4rem); order: -1; }
  .pq tbody { display: flex; flex-direction: column; }
  .pq tr.main { order: -1; }
  .levels .sum td.text { flex-basis: 100%; }
  .readers td::before { display: none; }
  .readers td.text { flex: 0 0 auto; min-width: 6rem; order: 0; } .readers td.text:last-child { flex: 1 1 100%; }
}
@media screen and (max-width: 36rem) { .numbers .narrow { display: none; } }

@media print {
  :root {
    --ink: #000; --soft: #444; --line: #bbb; --paper: #fff; --panel: #f4f4f4; --wave: #42688c;
    --pause: #dfe4ea; --data: #cbb6d6; --link: #000; --error: #a01510; --warning: #7a4d00;
    --note: #34526f; --good: #185a31;
  }
  @page { size: A4; margin: 14mm 12mm; }
  html { color-scheme: light; font-size: 9pt; }
  body { padding: 0; max-width: none; }
  h1 { font-size: 17pt; } h2 { margin: 6mm 0 2mm; font-size: 11pt; }
  table { font-size: 7.8pt; } th { font-size: 7.2pt; } small, td.code { font-size: 0.9em; }
  th, td { padding: 0.7mm 1.1mm; }
  .facts { gap: 2mm 5mm; margin-top: 4mm; padding-top: 3mm; grid-template-columns: 2fr 1fr 2fr 1fr 1fr; }
  .facts .wide { grid-template-columns: 36mm 1fr; }
  .disc svg { height: 26mm; } .strip svg { height: 11mm; } .strip { padding: 1.6mm 0; }
  thead { display: table-header-group; }
  tr, .strip, .disc, .facts > div, #findings li, #notes li { break-inside: avoid; }
  .pq tbody { break-inside: avoid-page; }
  h2, h3 { break-after: avoid; }
  svg, rect, path { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)css";

}  // namespace velmor::page

#pragma once

/// The style of the report's page: light and dark, narrow and wide, on paper.
inline constexpr char ReportStyle[] = R"css(
:root { --ground: #f4f6f8; --card: #fff; --line: #e1e6eb; --text: #18212b; --soft: #5a6877; --color: #2f6fde;
  --other: #9aa8b6; --track: #e9edf1; --bad: #b42318; --bad-ground: #fdf1ef; color-scheme: light; }
@media screen and (prefers-color-scheme: dark) {
  :root { --ground: #10151b; --card: #182029; --line: #2a3541; --text: #e7ecf1; --soft: #9aa9b8; --color: #6ba1ff;
    --other: #5d6d7d; --track: #232d38; --bad: #ff9b8f; --bad-ground: #33201e; color-scheme: dark; }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--ground); color: var(--text);
  font: 15px/1.45 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; }
main { max-width: 1120px; margin: 0 auto; padding: 32px 24px 48px; }
header { margin-bottom: 24px; }
h1 { margin: 0; font-size: 28px; line-height: 1.2; letter-spacing: -.01em; }
h2 { margin: 0 0 12px; font-size: 16px; }
p { margin: 0 0 8px; }
.soft, figcaption, .note { color: var(--soft); }
.note { margin: 12px 0 0; font-size: 13px; }
.notice { margin: 0 0 24px; padding: 12px 16px; border-left: 4px solid var(--bad); border-radius: 4px;
  background: var(--bad-ground); }
.notice a { color: inherit; }
.facts { display: grid; grid-template-columns: repeat(auto-fit, minmax(150px, 1fr)); gap: 16px; margin: 0 0 16px; }
.facts div, section { background: var(--card); border: 1px solid var(--line); border-radius: 10px; }
.facts div { padding: 14px 16px; }
.facts dt { color: var(--soft); font-size: 13px; }
.facts dd { margin: 2px 0 0; font-size: 24px; font-weight: 600; letter-spacing: -.01em;
  font-variant-numeric: tabular-nums; }
.facts dd + dd { font-size: 13px; font-weight: 400; letter-spacing: 0; color: var(--soft); }
.columns { display: grid; grid-template-columns: repeat(2, minmax(0, 1fr)); gap: 16px; }
section { padding: 18px 20px; min-width: 0; margin-bottom: 16px; }
.columns section { margin-bottom: 0; }
.columns { margin-bottom: 16px; }
table { width: 100%; border-collapse: collapse; font-variant-numeric: tabular-nums; }
th, td { padding: 6px 0 6px 16px; text-align: right; vertical-align: top; border-bottom: 1px solid var(--line); }
th { color: var(--soft); font-size: 13px; font-weight: 500; white-space: nowrap; }
tbody th { color: inherit; font-size: inherit; font-weight: 400; white-space: normal; overflow-wrap: anywhere; }
th:first-child { padding-left: 0; text-align: left; width: 100%; min-width: 90px; }
td { white-space: nowrap; }
tr:last-child th, tr:last-child td { border-bottom: 0; }
.rest th, .rest td { color: var(--soft); }
.bar { display: block; height: 4px; margin-top: 5px; border-radius: 2px; background: var(--track); overflow: hidden; }
.bar i { display: block; float: left; height: 100%; background: var(--color); }
.bar i + i { background: var(--other); }
.split { display: flex; height: 14px; margin: 4px 0 8px; border-radius: 4px; overflow: hidden; background: var(--other); }
.split i { background: var(--color); }
.chart { margin: 0; }
.plot { position: relative; height: 230px; margin: 10px 0 0 58px; }
.grid span { position: absolute; left: 0; right: 0; border-top: 1px solid var(--line); }
.grid b { position: absolute; right: 100%; padding-right: 8px; font-size: 12px; font-weight: 400; line-height: 0;
  color: var(--soft); font-variant-numeric: tabular-nums; }
.plot svg { position: absolute; inset: 0; width: 100%; height: 100%; }
rect.color { fill: var(--color); }
rect.other { fill: var(--other); }
g:hover rect { opacity: .75; }
.axis { position: relative; height: 24px; margin-left: 58px; font-size: 12px; color: var(--soft); }
.axis span { position: absolute; top: 6px; transform: translateX(-50%); white-space: nowrap; }
figcaption { margin-top: 6px; font-size: 13px; }
.key { margin-left: 16px; white-space: nowrap; }
.key::before { content: ""; display: inline-block; width: 10px; height: 10px; margin-right: 6px; border-radius: 2px;
  background: var(--color); }
.key.other::before { background: var(--other); }
.problems th, .problems td { text-align: left; white-space: normal; overflow-wrap: anywhere; }
.problems td:nth-child(2), .problems td:nth-child(3) { text-align: right; white-space: nowrap; }
.problems th:nth-child(2), .problems th:nth-child(3) { text-align: right; }
.problems thead th { white-space: nowrap; }
.problems th:first-child { width: 45%; }
@media (max-width: 900px) { .facts { grid-template-columns: repeat(3, 1fr); } }
@media (max-width: 820px) { .columns { grid-template-columns: minmax(0, 1fr); } }
@media (max-width: 560px) {
  main { padding: 20px 12px 32px; }
  section { padding: 14px; }
  th, td { padding-left: 10px; }
  table { font-size: 14px; }
  .columns { gap: 10px; margin-bottom: 10px; }
  .facts { grid-template-columns: repeat(2, 1fr); gap: 10px; }
  .facts div { padding: 10px 12px; }
  .facts dd { font-size: 20px; }
  .axis span:nth-child(even) { display: none; }
  .key { display: block; margin: 4px 0 0; }
  .plot { height: 180px; }
  .problems thead { display: none; }
  .problems tr { display: block; padding: 8px 0; border-bottom: 1px solid var(--line); }
  .problems tbody th, .problems td, .problems td:nth-child(2), .problems td:nth-child(3) { display: inline; padding: 0;
    border: 0; text-align: left; }
  .problems td:not(:empty):nth-child(2)::before { content: ", line "; }
  .problems td:not(:empty):nth-child(3)::before { content: ", record "; }
  .problems td:last-child { display: block; color: var(--soft); }
}
@media (max-width: 420px) { .counts td:nth-child(4), .counts th:nth-child(4) { display: none; } }
@page { margin: 14mm 12mm; }
@media print {
  :root { --ground: #fff; }
  * { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
  body { font-size: 8pt; line-height: 1.3; }
  main { max-width: none; padding: 0; }
  header { margin-bottom: 12px; }
  h1 { font-size: 17pt; }
  h2 { margin-bottom: 6px; font-size: 10pt; }
  .facts { grid-template-columns: repeat(6, 1fr); gap: 8px; margin-bottom: 10px; }
  .facts div { padding: 7px 9px; }
  .facts dd { font-size: 13pt; }
  .facts dt, .facts dd + dd, .note, figcaption, thead th, .axis, .grid b { font-size: 7pt; }
  .columns { grid-template-columns: repeat(2, minmax(0, 1fr)); gap: 10px; margin-bottom: 10px; }
  section { padding: 9px 11px; margin-bottom: 10px; }
  th, td { padding-top: 2px; padding-bottom: 2px; }
  .bar { height: 3px; margin-top: 2px; }
  .split { height: 9px; }
  .plot { height: 42mm; }
  tr, .chart, .facts, .columns { break-inside: avoid; }
  h2 { break-after: avoid; }
  thead { display: table-header-group; }
}
)css";

// The style sheet of the HTML page. Its digest must be updated with it; the test prints the new one.
#include "tools/status/page.h"

const char kPageStyle[] = R"css(
:root {
  color-scheme: light dark;
  --page: #f4f5f7; --card: #ffffff; --text: #1a1c1f; --soft: #50565d; --line: #868d95; --link: #0a4fb4;
  --ok: #e0f3e3; --ok-text: #0c4a1d; --warning: #ffe7ad; --warning-text: #523600;
  --critical: #b3161b; --critical-text: #ffffff; --unknown: #e8defa; --unknown-text: #3f1273;
  --info: #dbeafb; --info-text: #0b3d70; --free: #f4f5f7; --spare: #d5ecf0; --on-segment: #ffffff;
  --a0: #1f5fae; --a1: #85490a; --a2: #1b6b3b; --a3: #7a2c8a; --a4: #a02342; --a5: #3f5866;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #121417; --card: #1b1f24; --text: #e8eaed; --soft: #b4bac1; --line: #77808a; --link: #8fbcff;
    --ok: #14401f; --ok-text: #bdf0c8; --warning: #513a00; --warning-text: #ffe09a;
    --critical: #ff9389; --critical-text: #300000; --unknown: #3d2466; --unknown-text: #e7daff;
    --info: #0f375c; --info-text: #d2e7ff; --free: #121417; --spare: #17434c; --on-segment: #101214;
    --a0: #8ab8f5; --a1: #e8b06a; --a2: #7fd19a; --a3: #d9a2e8; --a4: #f59aae; --a5: #b5c7d3;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0 auto; padding: 1rem; max-width: 80rem; background: var(--page); color: var(--text);
  font: 100%/1.45 system-ui, sans-serif; overflow-wrap: break-word;
}
bdi { overflow-wrap: anywhere; }
a { color: var(--link); }
a:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; }
h1 { font-size: 1.6rem; margin: 0 0 .5rem; }
h2 { font-size: 1.35rem; margin: 2rem 0 .5rem; }
h3 { font-size: 1.1rem; margin: 1.5rem 0 .5rem; }
h4 { font-size: 1rem; margin: 0 0 .5rem; }
p { margin: .5rem 0; }
.summary { font-size: 1.15rem; font-weight: 600; }
nav ul { display: flex; flex-wrap: wrap; gap: .4rem 1.25rem; margin: 0; padding: 0; list-style: none; }
.badge {
  display: inline-block; padding: 0 .45rem; border: 1px solid; border-radius: .25rem;
  font-size: .85rem; font-weight: 600; overflow-wrap: normal;
}
.ok { background: var(--ok); color: var(--ok-text); }
.warning { background: var(--warning); color: var(--warning-text); }
.critical { background: var(--critical); color: var(--critical-text); }
.unknown { background: var(--unknown); color: var(--unknown-text); }
.info { background: var(--info); color: var(--info-text); }
.cards { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 30rem), 1fr)); gap: .75rem; }
.card {
  min-width: 0; padding: .75rem; border: 1px solid var(--line); border-radius: .4rem; background: var(--card);
}
.card + .card { margin-top: .75rem; }
.cards > .card { margin-top: 0; }
.card:target { outline: 3px solid var(--link); }
.notes { margin: 0 0 .5rem; padding: 0; list-style: none; }
.notes li { margin: .2rem 0; }
dl { display: grid; grid-template-columns: max-content minmax(0, 1fr); gap: .1rem .75rem; margin: 0; }
dt { color: var(--soft); }
dd { margin: 0; }
table { width: 100%; border-collapse: collapse; margin: .5rem 0 0; background: var(--card); }
caption { padding: .25rem 0; text-align: left; color: var(--soft); font-size: .9rem; }
th, td { padding: .3rem .45rem; border: 1px solid var(--line); text-align: left; vertical-align: top; }
th { font-weight: 600; }
.findings { table-layout: fixed; }
.findings caption { background: var(--page); }
.findings th:first-child { width: 6.3rem; }
.findings th:nth-child(2) { width: 34%; }
.members { font-size: .9rem; }
.members tbody th { white-space: nowrap; }
.members td:nth-child(2) { min-width: 6.4rem; }
.sensors { width: auto; min-width: min(100%, 24rem); }
.sensors th::first-letter, .progress label::first-letter { text-transform: uppercase; }
.action { color: var(--soft); }
progress, .progress label { display: block; }
progress { width: 100%; height: 1rem; accent-color: var(--a0); }
.slots {
  display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 8.5rem), 1fr)); gap: .5rem;
  margin: 0; padding: 0; list-style: none;
}
.slot { min-width: 0; padding: .4rem .5rem; border: 2px solid var(--line); border-radius: .25rem; }
.slot.empty { border-style: dashed; color: var(--soft); }
.where, .use { display: block; font-size: .9rem; }
.where { color: var(--soft); }
.strip { display: block; margin: .6rem 0 .4rem; border: 1px solid var(--line); }
.strip rect { fill: var(--segment); stroke: var(--line); stroke-width: 1; }
.strip text {
  fill: var(--segment-text); text-anchor: middle; dominant-baseline: central;
  font-size: .8rem; font-weight: 600;
}
.key {
  display: inline-block; min-width: 1.75rem; padding: 0 .25rem; border: 1px solid var(--line);
  background: var(--segment); color: var(--segment-text);
  text-align: center; font-size: .8rem; font-weight: 600;
}
.extents { margin: 0; padding: 0; list-style: none; font-size: .9rem; }
.extents li { margin: .2rem 0; }
.a0 { --segment: var(--a0); --segment-text: var(--on-segment); }
.a1 { --segment: var(--a1); --segment-text: var(--on-segment); }
.a2 { --segment: var(--a2); --segment-text: var(--on-segment); }
.a3 { --segment: var(--a3); --segment-text: var(--on-segment); }
.a4 { --segment: var(--a4); --segment-text: var(--on-segment); }
.a5 { --segment: var(--a5); --segment-text: var(--on-segment); }
.lost { --segment: var(--critical); --segment-text: var(--critical-text); }
.spare { --segment: var(--spare); --segment-text: var(--text); }
.free, .gap { --segment: var(--free); --segment-text: var(--text); }
.other { --segment: var(--unknown); --segment-text: var(--unknown-text); }
@media (max-width: 30rem) {
  body { padding: .75rem; }
  .findings, .sensors { font-size: .85rem; }
  .findings th, .findings td { padding: .3rem .25rem; }
  .findings .badge { font-size: .75rem; padding: 0 .25rem; }
  .findings th:first-child { width: 5.1rem; }
  .findings th:nth-child(2) { width: 28%; }
  .members { font-size: .8rem; }
  .members th, .members td { padding: .25rem; }
  .members td:nth-child(2) { min-width: 5.4rem; }
  .members td:nth-child(3) { min-width: 6.3rem; }
  .members .badge { font-size: .75rem; padding: 0 .25rem; }
}
@media print {
  .badge, .key, .strip { print-color-adjust: exact; }
  .card { break-inside: avoid; }
}
)css";

const char kPageStyleDigest[] = "PsNTMNmqgGCEXg6hbIpHR3WBfhRrQKV5hCVSNE8NOU8=";

// Opens a Brinecast HTML report in Debian's Chromium, headless, and fails unless it loads with no
// console error, page error or request (it must work offline), every plot has drawn each of its
// series and its reference line, each legend lists the plot's series by name, and no hostile name
// ran as markup. Leaves a screenshot of the page.
//   node HtmlReportInBrowser.js <page.html> <screenshot.png>
"use strict";
const path = require("path");
const fs = require("fs");
const { chromium } = require("playwright-core");

const REFERENCE_RGB = [0x44, 0x44, 0x44];  // the dashed line's colour in web/report/report.js

function fail(problems) {
  for (const p of problems) console.error("FAIL: " + p);
  process.exit(1);
}

function browserPath() {
  const exe = process.env.BRINECAST_CHROMIUM || "/usr/bin/chromium";
  if (!fs.existsSync(exe)) {
    fail([`no Chromium at ${exe}: install Debian's chromium (scripts/install-deps.sh does, as root) ` +
          "or set BRINECAST_CHROMIUM to a Chromium executable"]);
  }
  return exe;
}

function watch(page, problems) {
  page.on("console", (m) => { if (m.type() === "error") problems.push("console error: " + m.text()); });
  page.on("pageerror", (e) => problems.push("page error: " + e.message));
  page.on("requestfailed", (r) => problems.push("failed request: " + r.url()));
  page.on("request", (r) => {
    if (!r.url().startsWith("file:") && !r.url().startsWith("data:")) {
      problems.push("the page fetched " + r.url() + "; it must work offline");
    }
  });
}

// Runs in the page: for each plot, its series names, the legend's labels and how many opaque
// canvas pixels carry each series' colour and the reference line's.
function inspectPlots(referenceRgb) {
  const rgb = (css) => (css.match(/\d+/g) || []).slice(0, 3).map(Number);
  const near = (d, i, c) => d[i + 3] >= 250 && c.every((v, k) => Math.abs(d[i + k] - v) <= 8);
  return Array.from(document.querySelectorAll("figure.plot")).map((figure) => {
    const data = figure.querySelector("script.plot-data");
    if (!data) return { empty: true };
    const plot = JSON.parse(data.textContent);
    const canvas = figure.querySelector(".uplot canvas");
    const rows = Array.from(figure.querySelectorAll(".u-legend .u-series")).slice(1);
    const colours = rows.map((r) => rgb(getComputedStyle(r.querySelector(".u-marker")).borderColor));
    const counts = colours.map(() => 0);
    let reference = 0;
    if (canvas) {
      const d = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data;
      for (let i = 0; i < d.length; i += 4) {
        colours.forEach((c, s) => { if (near(d, i, c)) counts[s]++; });
        if (near(d, i, referenceRgb)) reference++;
      }
    }
    return {
      title: plot.title, names: plot.series.map((s) => s.name), referenceY: plot.referenceY,
      canvas: !!canvas, labels: rows.map((r) => r.querySelector(".u-label").textContent),
      counts, reference,
    };
  });
}

function judge(plots, problems) {
  if (plots.length === 0) problems.push("the page has no plot");
  plots.forEach((p, i) => {
    if (p.empty) return;
    const name = `plot ${i + 1} (${p.title})`;
    if (!p.canvas) return problems.push(`${name} has no canvas`);
    if (JSON.stringify(p.labels) !== JSON.stringify(p.names)) {
      problems.push(`${name}: legend ${JSON.stringify(p.labels)}, series ${JSON.stringify(p.names)}`);
    }
    p.counts.forEach((n, s) => {
      if (n < 20) problems.push(`${name}: series "${p.names[s]}" drew ${n} pixels`);
    });
    if (p.referenceY !== null && p.reference < 20) {
      problems.push(`${name}: the reference line drew ${p.reference} pixels`);
    }
  });
}

async function main() {
  const [page_, shot] = process.argv.slice(2);
  if (!page_ || !shot) fail(["usage: node HtmlReportInBrowser.js <page.html> <screenshot.png>"]);
  const args = ["--disable-dev-shm-usage", "--disable-gpu"];
  if (process.getuid && process.getuid() === 0) args.push("--no-sandbox");  // Chromium refuses root otherwise
  const browser = await chromium.launch({ executablePath: browserPath(), headless: true, args });
  const problems = [];
  try {
    const page = await browser.newPage({ viewport: { width: 1100, height: 900 }, deviceScaleFactor: 1 });
    watch(page, problems);
    await page.goto("file://" + path.resolve(page_), { waitUntil: "load" });
    judge(await page.evaluate(inspectPlots, REFERENCE_RGB), problems);
    if (await page.evaluate(() => window.hostile !== undefined)) problems.push("a hostile name ran as markup");
    fs.mkdirSync(path.dirname(path.resolve(shot)), { recursive: true });
    await page.screenshot({ path: shot, fullPage: true });
  } finally {
    await browser.close();
  }
  if (problems.length) fail(problems);
  console.log("The report loaded offline and drew every plot; screenshot: " + path.resolve(shot));
}

main().catch((e) => fail([e.stack || String(e)]));

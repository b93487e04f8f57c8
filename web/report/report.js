// Draws each plot of a Brinecast report with uPlot, from the numbers the page carries as JSON
// beside the plot: one line per series (null is a gap), a legend, axis labels and a dashed
// reference line (e.g. SI = 0, saturation).
(function () {
  "use strict";

  var palette = ["#1f77b4", "#d62728", "#2ca02c", "#9467bd", "#ff7f0e",
                 "#8c564b", "#e377c2", "#17becf", "#bcbd22", "#7f7f7f"];
  var referenceColour = "#444444";
  var heightPx = 360;

  // Past the palette, hues spread by the golden angle stay apart from their neighbours.
  function colour(i) {
    if (i < palette.length) return palette[i];
    return "hsl(" + Math.round((i * 137.508) % 360) + ", 60%, 40%)";
  }

  function widthPx(holder) {
    return Math.max(320, Math.min(holder.clientWidth || 800, 960));
  }

  // The y range covers the data and the reference line, so the line is always in view.
  function yRange(referenceY) {
    return function (u, min, max) {
      if (referenceY === null) {
        return min === null ? [-1, 1] : uPlot.rangeNum(min, max, 0.1, true);
      }
      var lo = min === null ? referenceY - 1 : Math.min(min, referenceY);
      var hi = max === null ? referenceY + 1 : Math.max(max, referenceY);
      return uPlot.rangeNum(lo, hi, 0.1, true);
    };
  }

  function referenceLine(referenceY) {
    return {
      hooks: {
        draw: [function (u) {
          if (referenceY === null) return;
          var ctx = u.ctx;
          var y = Math.round(u.valToPos(referenceY, "y", true)) + 0.5;
          ctx.save();
          ctx.strokeStyle = referenceColour;
          ctx.lineWidth = Math.max(1, Math.round(uPlot.pxRatio));
          ctx.setLineDash([6 * uPlot.pxRatio, 4 * uPlot.pxRatio]);
          ctx.beginPath();
          ctx.moveTo(u.bbox.left, y);
          ctx.lineTo(u.bbox.left + u.bbox.width, y);
          ctx.stroke();
          ctx.restore();
        }]
      }
    };
  }

  function options(plot, holder) {
    var series = [{ label: plot.xLabel }];
    plot.series.forEach(function (s, i) {
      series.push({ label: s.name, stroke: colour(i), width: 2, spanGaps: false });
    });
    return {
      width: widthPx(holder),
      height: heightPx,
      series: series,
      scales: { x: { time: false }, y: { range: yRange(plot.referenceY) } },
      axes: [{ label: plot.xLabel }, { label: plot.yLabel }],
      plugins: [referenceLine(plot.referenceY)]
    };
  }

  function draw(figure) {
    var source = figure.querySelector("script.plot-data");
    var holder = figure.querySelector(".chart");
    if (!source || !holder) return null;
    var plot = JSON.parse(source.textContent);
    var data = [plot.x].concat(plot.series.map(function (s) { return s.y; }));
    var chart = new uPlot(options(plot, holder), data, holder);
    return { chart: chart, holder: holder };
  }

  var charts = Array.prototype.map.call(document.querySelectorAll("figure.plot"), draw)
    .filter(function (c) { return c !== null; });
  window.addEventListener("resize", function () {
    charts.forEach(function (c) { c.chart.setSize({ width: widthPx(c.holder), height: heightPx }); });
  });
})();

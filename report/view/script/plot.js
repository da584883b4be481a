// Profiles on one plot, with two cursors that stand on points.

const DASHES = [[], [8, 4], [2, 3], [10, 3, 2, 3], [5, 5], [14, 4]];

class LinePlot {
    /// @param labels of both axes; @param name of the plot, for ids and screen readers
    constructor(host, name, xLabel, yLabel) {
        [this.xLabel, this.yLabel, this.series] = [xLabel, yLabel, []];
        const tools = add(host, "div", "", {class: "tools"});
        this.active = addSelect(tools, "Cursor", ["A", "B"], () => this.sheet.redraw());
        addButton(tools, "+", "Zoom in", () => this.zoom(0.5));
        addButton(tools, "\u2212", "Zoom out", () => this.zoom(2));
        addButton(tools, "Whole", "Show everything", () => this.showAll());
        this.equal = addInput(tools, "Equal scales", {type: "checkbox"}, () => this.sheet.redraw());
        this.sheet = new Sheet(host, name, (...all) => this.draw(...all),
            "Click or arrow keys move the cursor from point to point (with Shift by 10), up and down change the profile; " +
            "A and B choose the cursor; drag, + and \u2212 zoom; 0 shows everything.");
        this.hover = add(host, "p", "", {class: "hover", id: `${name}-hover`});
        this.readout = add(host, "output", "", {id: `${name}-cursors`, "aria-live": "polite"});
        this.cursors = [null, null];
        this.listen();
    }

    /// @param gap points further apart in x are not joined
    show(series, gap = Infinity, keepWindow = false) {
        [this.series, this.gap] = [series, gap];
        this.cursors = this.cursors.map((c) => c && series[c.series]?.x.length > c.point ? c : null);
        if (keepWindow && this.window) this.redraw(); else this.showAll();
    }

    showAll() {
        const pad = (r, part) => {
            const more = r.max > r.min ? (r.max - r.min) * part : 0.5;
            return {min: r.min - more, max: r.max + more};
        };
        this.window = {x: pad(rangeOf(...this.series.map((s) => s.x)), 0.01),
                       y: pad(rangeOf(...this.series.map((s) => s.y)), 0.05)};
        this.redraw();
    }

    redraw() {
        this.tell();
        this.sheet.redraw();
    }

    zoom(factor, at = null) {
        for (const axis of ["x", "y"]) {
            const r = this.window[axis];
            const middle = at ? at[axis] : (r.min + r.max) / 2;
            const next = {min: middle + (r.min - middle) * factor, max: middle + (r.max - middle) * factor};
            if (next.max - next.min > view.resolution && next.max - next.min < 1e9) this.window[axis] = next;
        }
        this.redraw();
    }

    draw(context, width, height) {
        const area = this.area = {left: 64, top: 44, width: width - 76, height: height - 88};
        let {x, y} = this.window;
        if (this.equal.checked) {
            const unit = Math.max((x.max - x.min) / area.width, (y.max - y.min) / area.height);
            const around = (r, pixels) => ({min: (r.min + r.max - unit * pixels) / 2, max: (r.min + r.max + unit * pixels) / 2});
            [x, y] = [around(x, area.width), around(y, area.height)];
        }
        this.axes = drawAxes(context, area, x, y, this.xLabel, this.yLabel);
        context.save();
        context.beginPath();
        context.rect(area.left, area.top, area.width, area.height);
        context.clip();
        this.series.forEach((s, i) => this.drawSeries(context, s, i));
        if (this.box) {
            context.strokeStyle = cssColour("--ink");
            context.strokeRect(this.box.x0, this.box.y0, this.box.x1 - this.box.x0, this.box.y1 - this.box.y0);
        }
        context.restore();
        this.drawLegend(context, width);
        this.cursors.forEach((c, i) => c && this.drawCursor(context, c, "AB"[i]));
    }

    /// Colour and dashes: those of the place in the list, or of the number and colour that a series brings.
    look(context, s, number) {
        const look = (s.n ?? number) % 6;
        context.strokeStyle = context.fillStyle = s.colour ? cssColour(s.colour) : seriesColour(look);
        context.setLineDash(s.marks ? [] : DASHES[look]);
    }

    drawSeries(context, s, number) {
        const {toX, toY} = this.axes;
        const gap = s.curve ? Infinity : this.gap;
        this.look(context, s, number);
        if (s.marks) return s.x.forEach((x, i) => ring(context, toX(x), toY(s.y[i]), 6));
        context.lineWidth = 1.5;
        context.beginPath();
        let last = NaN;
        for (let i = 0; i < s.x.length; i++) {
            const whole = Number.isFinite(s.x[i]) && Number.isFinite(s.y[i]);
            if (whole && Math.abs(s.x[i] - last) <= gap) context.lineTo(toX(s.x[i]), toY(s.y[i]));
            else if (whole) context.moveTo(toX(s.x[i]), toY(s.y[i]));
            last = whole ? s.x[i] : NaN;
        }
        context.stroke();
        context.setLineDash([]);
        if (s.curve) return;
        const size = s.x.length * 3 < this.area.width ? 4 : 2;
        for (let i = 0; i < s.x.length; i++) {
            if (Number.isFinite(s.x[i]) && Number.isFinite(s.y[i])) {
                context.fillRect(toX(s.x[i]) - size / 2, toY(s.y[i]) - size / 2, size, size);
            }
        }
    }

    drawLegend(context, width) {
        let left = 64;
        context.textAlign = "left";
        this.series.forEach((s, i) => {
            const text = s.name.length > 30 ? s.name.slice(0, 29) + "\u2026" : s.name;
            const wide = context.measureText(text).width + 46;
            if (!text || left + wide > width) return;
            this.look(context, s, i);
            context.lineWidth = 2;
            if (s.marks) ring(context, left + 13, 12, 6);
            else line(context, [[left, 12], [left + 26, 12]]);
            context.setLineDash([]);
            context.fillStyle = cssColour("--ink");
            context.fillText(text, left + 32, 16);
            left += wide;
        });
    }

    drawCursor(context, cursor, letter) {
        const s = this.series[cursor.series];
        const x = this.axes.toX(s.x[cursor.point]), y = this.axes.toY(s.y[cursor.point]);
        const {left, top, width, height} = this.area;
        if (x < left || x > left + width) return;
        context.strokeStyle = context.fillStyle = cssColour("--ink");
        context.lineWidth = 1;
        context.setLineDash([4, 3]);
        line(context, [[x, top], [x, top + height]]);
        if (y >= top && y <= top + height) line(context, [[left, y], [left + width, y]]);
        context.setLineDash([]);
        ring(context, x, y, 4);
        context.textAlign = "center";
        context.fillText(letter, x, top - 3);
    }

    /// The point nearest to a place on the canvas.
    nearest(place) {
        let best = null, least = Infinity;
        this.series.forEach((s, series) => {
            for (let point = 0; point < s.x.length; point++) {
                const far = (this.axes.toX(s.x[point]) - place.x) ** 2 + (this.axes.toY(s.y[point]) - place.y) ** 2;
                if (far < least) [least, best] = [far, {series, point}];
            }
        });
        return best;
    }

    /// Moves the active cursor along its profile, over missing points.
    step(by) {
        const which = this.active.selectedIndex;
        const c = this.cursors[which] ?? {series: 0, point: by > 0 ? -1 : this.series[0].x.length};
        const s = this.series[c.series];
        let point = Math.max(0, Math.min(s.x.length - 1, c.point + by));
        while (point >= 0 && point < s.x.length && !(Number.isFinite(s.x[point]) && Number.isFinite(s.y[point]))) {
            point += Math.sign(by);
        }
        if (s.x[point] !== undefined) this.put({series: c.series, point});
    }

    changeSeries(by) {
        const c = this.cursors[this.active.selectedIndex];
        if (!c || this.series.length < 2) return;
        const series = (c.series + by + this.series.length) % this.series.length;
        const xs = this.series[series].x, at = this.series[c.series].x[c.point];
        let point = -1;
        for (let i = 0; i < xs.length; i++) {
            const known = Number.isFinite(xs[i]) && Number.isFinite(this.series[series].y[i]);
            if (known && (point < 0 || Math.abs(xs[i] - at) < Math.abs(xs[point] - at))) point = i;
        }
        if (point >= 0) this.put({series, point});
    }

    put(cursor) {
        this.cursors[this.active.selectedIndex] = cursor;
        this.redraw();
    }

    pointText(c) {
        const s = this.series[c.series];
        const name = this.series.length > 1 ? s.name + ", " : "";
        return `${name}point ${c.point + 1}: x ${this.text(s.x[c.point], 0)}, y ${this.text(s.y[c.point], 1)}`;
    }

    /// A coordinate with its unit, which the label of its axis ends with: 0 for x, 1 for y.
    text(v, axis) {
        const unit = (axis ? this.yLabel : this.xLabel).split(", ")[1];
        return unit === "mm" ? mm(v) : numberText(v) + (unit ? ` ${unit}` : "");
    }

    /// What the cursors say.
    tell() {
        const [a, b] = this.cursors;
        const lines = this.cursors.map((c, i) => c ? `${"AB"[i]}: ${this.pointText(c)}` : "").filter(Boolean);
        if (a && b) {
            const dx = this.series[b.series].x[b.point] - this.series[a.series].x[a.point];
            const dy = this.series[b.series].y[b.point] - this.series[a.series].y[a.point];
            const isFlat = [this.xLabel, this.yLabel].every((label) => label.endsWith(", mm"));
            const angle = dx || dy ? (Math.atan2(dy, dx) * 180 / Math.PI).toFixed(2) + "\u00b0" : "none";
            lines.push(`B \u2212 A: dx ${this.text(dx, 0)}, dy ${this.text(dy, 1)}` +
                (isFlat ? `, distance ${mm(Math.hypot(dx, dy))}, angle ${angle}` : ""));
        }
        this.readout.textContent = lines.join("\n");
    }

    listen() {
        const {canvas} = this.sheet;
        canvas.addEventListener("pointerdown", (event) => {
            const {x, y} = this.sheet.place(event);
            this.box = {x0: x, y0: y, x1: x, y1: y};
        });
        canvas.addEventListener("pointermove", (event) => {
            const place = this.sheet.place(event);
            if (this.box) {
                [this.box.x1, this.box.y1] = [place.x, place.y];
                this.sheet.redraw();
            } else if (this.axes) {
                const c = this.nearest(place);
                this.hover.textContent = c ? this.pointText(c) : "";
            }
        });
        canvas.addEventListener("pointerup", (event) => this.release(this.sheet.place(event)));
        canvas.addEventListener("pointercancel", () => this.release(null));
        canvas.addEventListener("dblclick", () => this.showAll());
        onWheel(canvas, (isIn, event) => {
            const place = this.sheet.place(event);
            this.zoom(isIn ? 0.8 : 1.25, {x: this.axes.fromX(place.x), y: this.axes.fromY(place.y)});
        });
        const choose = (which) => {
            this.active.selectedIndex = which;
            this.redraw();
        };
        onKeys(canvas, {ArrowLeft: (n) => this.step(-n), ArrowRight: (n) => this.step(n),
            ArrowUp: () => this.changeSeries(-1), ArrowDown: () => this.changeSeries(1), a: () => choose(0),
            b: () => choose(1), A: () => choose(0), B: () => choose(1), "+": () => this.zoom(0.5),
            "-": () => this.zoom(2), 0: () => this.showAll()});
    }

    /// A click puts the cursor, a drag shows what is in its box.
    release(place) {
        const box = this.box;
        this.box = null;
        if (!box || !place) return this.sheet.redraw();
        if (Math.abs(place.x - box.x0) < 5 || Math.abs(place.y - box.y0) < 5) {
            const c = this.nearest(place);
            if (c) this.put(c);
            return this.sheet.redraw();
        }
        const sorted = (a, b) => ({min: Math.min(a, b), max: Math.max(a, b)});
        this.window = {x: sorted(this.axes.fromX(box.x0), this.axes.fromX(place.x)),
                       y: sorted(this.axes.fromY(box.y0), this.axes.fromY(place.y))};
        this.redraw();
    }
}

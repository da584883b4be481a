// A height map from above: rows to the right, columns upwards. A cursor on a cell, and a section between two cells.

class Plan {
    /// @param map rows, columns, originX, originZ, pitchX, pitchZ, alongLabel, acrossLabel, values, low and high (or null), block
    constructor(host, map, {onSection, onCell}) {
        [this.map, this.onSection, this.onCell] = [map, onSection, onCell];
        this.shown = map.values;
        this.whole = map.range;
        this.range = {...this.whole};
        const tools = add(host, "div", "", {class: "tools"});
        addButton(tools, "+", "Zoom in", () => this.zoom(0.5));
        addButton(tools, "\u2212", "Zoom out", () => this.zoom(2));
        addButton(tools, "Whole", "Show the whole map", () => this.showAll());
        if (map.low) {
            addSelect(tools, "Of each block", ["median", "minimum", "maximum"], (i) => this.showLayer(i));
        }
        this.inputs = ["min", "max"].map((end) => addInput(tools, end === "min" ? "Colours from" : "to",
            {type: "number", step: "any", value: numberText(this.range[end])}, (input) => this.limit(end, input)));
        this.sheet = new Sheet(host, "Height map from above", (...all) => this.draw(...all),
            "Arrow keys move the cursor (with Shift by 10 cells); drag for a section, or Enter begins and ends one at " +
            "the cursor; + and \u2212 zoom; 0 shows the whole map.");
        this.readout = add(host, "output", "", {id: "cell", "aria-live": "polite"});
        this.cell = null;
        this.section = null;
        this.showAll();
        this.listen();
    }

    showLayer(number) {
        this.shown = [this.map.values, this.map.low, this.map.high][number];
        this.onLayer?.(this.shown);
        this.sheet.redraw();
    }

    limit(end, input) {
        const value = input.valueAsNumber;
        const next = {...this.range, [end]: value};
        if (next.max > next.min) this.range = next;
        this.onRange?.(this.range);
        this.sheet.redraw();
    }

    showAll() {
        this.window = {z0: -0.5, z1: this.map.rows - 0.5, x0: -0.5, x1: this.map.columns - 0.5};
        this.sheet.redraw();
    }

    zoom(factor, at = this.cell) {
        const {rows, columns} = this.map;
        const part = (from, to, size, middle) => {
            const length = Math.min(size, Math.max(4, (to - from) * factor));
            const share = (middle - from) / (to - from);
            const start = Math.min(size - 0.5 - length, Math.max(-0.5, middle - share * length));
            return [start, start + length];
        };
        const w = this.window;
        [w.z0, w.z1] = part(w.z0, w.z1, rows, at?.row ?? (w.z0 + w.z1) / 2);
        [w.x0, w.x1] = part(w.x0, w.x1, columns, at?.column ?? (w.x0 + w.x1) / 2);
        this.sheet.redraw();
    }

    z(row) { return this.map.originZ + row * this.map.pitchZ; }
    x(column) { return this.map.originX + column * this.map.pitchX; }

    draw(context, width, height) {
        const area = this.area = {left: 64, top: 32, width: width - 156, height: height - 76};
        const w = this.window;
        this.axes = drawAxes(context, area, {min: this.z(w.z0), max: this.z(w.z1)}, {min: this.x(w.x0), max: this.x(w.x1)},
            this.map.alongLabel, this.map.acrossLabel);
        this.drawCells(context, area);
        drawScale(context, this.range, width - 80, area.top, area.height - 40, this.map.heightLabel);
        const pattern = context.createImageData(14, 14);
        const pixels = new Uint32Array(pattern.data.buffer);
        pixels.forEach((_, i) => { pixels[i] = missingPixel(i % 14, Math.floor(i / 14)); });
        const ratio = this.sheet.ratio;
        context.putImageData(pattern, Math.round((width - 80) * ratio), Math.round((area.top + area.height - 14) * ratio));
        context.fillText("missing", width - 6, area.top + area.height - 2);
        this.drawScaleBar(context, area);
        this.drawMarks(context, area);
    }

    /// Each pixel has the colour of the cell in its middle.
    drawCells(context, area) {
        const ratio = this.sheet.ratio, w = this.window, {columns} = this.map;
        const wide = Math.round(area.width * ratio), high = Math.round(area.height * ratio);
        const image = context.createImageData(wide, high);
        const pixels = new Uint32Array(image.data.buffer);
        const rows = Int32Array.from({length: wide}, (_, i) => Math.round(w.z0 + (i + 0.5) / wide * (w.z1 - w.z0)));
        for (let py = 0; py < high; py++) {
            const column = Math.round(w.x1 - (py + 0.5) / high * (w.x1 - w.x0));
            for (let px = 0; px < wide; px++) {
                const value = this.shown[Math.min(this.map.rows - 1, rows[px]) * columns + Math.min(columns - 1, column)];
                pixels[py * wide + px] = value === value ? palette[shadeOf(value, this.range)] : missingPixel(px, py);
            }
        }
        context.putImageData(image, Math.round(area.left * ratio), Math.round(area.top * ratio));
    }

    /// A length along z, where its positions are lengths.
    drawScaleBar(context, area) {
        if (!this.map.isLength) return;
        const unit = (this.window.z1 - this.window.z0) * this.map.pitchZ / area.width;
        const length = ticks(0, unit * area.width / 3, 2).at(-1).at;
        const text = `${+length.toPrecision(3)} mm along z`;
        const wide = Math.max(length / unit, context.measureText(text).width) + 12;
        context.fillStyle = cssColour("--paper");
        context.fillRect(area.left + 6, area.top + area.height - 34, wide, 28);
        context.fillStyle = cssColour("--ink");
        context.fillRect(area.left + 12, area.top + area.height - 13, length / unit, 3);
        context.textAlign = "left";
        context.fillText(text, area.left + 12, area.top + area.height - 19);
    }

    drawMarks(context, area) {
        context.save();
        context.beginPath();
        context.rect(area.left, area.top, area.width, area.height);
        context.clip();
        const at = (cell) => [this.axes.toX(this.z(cell.row)), this.axes.toY(this.x(cell.column))];
        const twice = (points) => { // seen on dark and light cells
            for (const [colour, wide] of [["#000000", 4], ["#ffffff", 1.5]]) {
                [context.strokeStyle, context.lineWidth] = [colour, wide];
                line(context, points);
            }
        };
        if (this.section) twice([at(this.section.from), at(this.section.to)]);
        if (this.cell) {
            const [x, y] = at(this.cell);
            for (const [dx, dy] of [[1, 0], [-1, 0], [0, 1], [0, -1]]) twice([[x + 4 * dx, y + 4 * dy], [x + 14 * dx, y + 14 * dy]]);
        }
        context.restore();
    }

    cellAt(place) {
        const w = this.window, {area} = this;
        const inside = (v, most) => Math.min(most - 1, Math.max(0, Math.round(v)));
        return {row: inside(w.z0 + (place.x - area.left) / area.width * (w.z1 - w.z0), this.map.rows),
                column: inside(w.x1 - (place.y - area.top) / area.height * (w.x1 - w.x0), this.map.columns)};
    }

    isInside({x, y}) {
        const {left, top, width, height} = this.area;
        return x >= left && y >= top && x < left + width && y < top + height;
    }

    move(rows, columns) {
        const c = this.cell ?? {row: Math.floor(this.map.rows / 2), column: Math.floor(this.map.columns / 2)};
        const inside = (v, most) => Math.min(most - 1, Math.max(0, v));
        this.put({row: inside(c.row + rows, this.map.rows), column: inside(c.column + columns, this.map.columns)});
        const w = this.window;
        const isSeen = this.cell.row >= w.z0 && this.cell.row <= w.z1 && this.cell.column >= w.x0 && this.cell.column <= w.x1;
        if (!isSeen) {
            const halfZ = (w.z1 - w.z0) / 2, halfX = (w.x1 - w.x0) / 2;
            Object.assign(w, {z0: this.cell.row - halfZ, z1: this.cell.row + halfZ, x0: this.cell.column - halfX,
                              x1: this.cell.column + halfX});
            this.zoom(1);
        }
    }

    cellText({row, column}) {
        const {map} = this, at = row * map.columns + column, h = map.values[at];
        const along = map.isLength ? `z ${mm(this.z(row))}` : `${map.alongName} ${this.z(row)}`;
        const blocks = map.low && h === h
            ? ` (median; lowest ${mm(map.low[at])}, highest ${mm(map.high[at])} of its ${map.block} \u00d7 ${map.block} cells)` : "";
        return `row ${row + 1}, column ${column + 1}: ${along}, x ${mm(this.x(column))}, ${map.heightLabel.match(/\w+/)} ${mm(h)}${blocks}`;
    }

    put(cell) {
        this.cell = cell;
        this.readout.textContent = this.cellText(cell);
        this.onCell?.(cell);
        this.sheet.redraw();
    }

    showSection(from, to) {
        this.section = {from, to};
        this.onSection(from, to);
        this.sheet.redraw();
    }

    /// Enter begins a section at the cursor, and ends it.
    key() {
        if (!this.cell) this.move(0, 0);
        if (this.begun) this.showSection(this.begun, this.cell);
        this.begun = this.begun ? null : this.cell;
        this.readout.textContent = this.cellText(this.cell) + (this.begun ? " \u2013 a section begins here" : "");
    }

    listen() {
        const {canvas} = this.sheet;
        let from = null, start = null;
        canvas.addEventListener("pointerdown", (event) => {
            start = this.sheet.place(event);
            if (!this.isInside(start)) return;
            from = this.cellAt(start);
            canvas.setPointerCapture(event.pointerId);
        });
        canvas.addEventListener("pointermove", (event) => {
            const place = this.sheet.place(event);
            if (from && Math.hypot(place.x - start.x, place.y - start.y) > 5) this.showSection(from, this.cellAt(place));
            if (this.isInside(place)) this.readout.textContent = this.cellText(this.cellAt(place));
        });
        canvas.addEventListener("pointerup", (event) => {
            const place = this.sheet.place(event);
            if (from && Math.hypot(place.x - start.x, place.y - start.y) <= 5) this.put(from);
            from = null;
        });
        canvas.addEventListener("pointercancel", () => { from = null; });
        onWheel(canvas, (isIn, event) => this.zoom(isIn ? 0.8 : 1.25, this.cellAt(this.sheet.place(event))));
        onKeys(canvas, {ArrowLeft: (n) => this.move(-n, 0), ArrowRight: (n) => this.move(n, 0),
            ArrowUp: (n) => this.move(0, n), ArrowDown: (n) => this.move(0, -n), Enter: () => this.key(),
            "+": () => this.zoom(0.5), "-": () => this.zoom(2), 0: () => this.showAll()});
    }
}

/// The cells on the straight line between two: the nearest ones, one for each step along the longer axis.
function cellsBetween(map, from, to) {
    const rows = to.row - from.row, columns = to.column - from.column;
    const steps = Math.max(Math.abs(rows), Math.abs(columns), 1);
    const x = new Float64Array(steps + 1), y = new Float64Array(steps + 1);
    for (let i = 0; i <= steps; i++) {
        const dz = Math.round(rows * i / steps), dx = Math.round(columns * i / steps);
        x[i] = map.isLength ? Math.hypot(dz * map.pitchZ, dx * map.pitchX)
            : rows === 0 ? Math.abs(dx) * map.pitchX : i;
        y[i] = map.values[(from.row + dz) * map.columns + from.column + dx];
    }
    return {x, y};
}

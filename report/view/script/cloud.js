// A cloud: one mark for each point, the nearest one in front, coloured by height or by its own colour.

class Cloud {
    constructor(host, {x, y, z, own}) {
        Object.assign(this, {x, y, z, own});
        this.ranges = [rangeOf(x), rangeOf(y), rangeOf(z)];
        this.range = this.ranges[1];
        this.eye = new Eye(host, {yaw: 0.5, pitch: 0.5, lowest: -Math.PI / 2}, () => this.sheet.redraw());
        const {tools} = this.eye;
        if (own) {
            this.by = addSelect(tools, "Colour", ["own", "height"], () => this.sheet.redraw());
        }
        this.size = addInput(tools, "Size", {type: "range", min: "1", max: "6", value: x.length < 20000 ? "4" : "2"},
            () => this.sheet.redraw());
        this.sheet = new Sheet(host, "Cloud", (...all) => this.draw(...all),
            Eye.HELP + " A click chooses a point, N the next one of the file.");
        this.readout = add(host, "output", "", {id: "point", "aria-live": "polite"});
        this.listen();
    }

    draw(context, width, height) {
        const ratio = this.sheet.ratio;
        const wide = Math.round((width - 90) * ratio), high = Math.round(height * ratio);
        const image = context.createImageData(wide, high);
        const pixels = new Uint32Array(image.data.buffer);
        this.depth = new Float32Array(wide * high).fill(-Infinity);
        this.owner = new Int32Array(wide * high).fill(-1);
        const [mx, my, mz] = this.ranges.map((r) => (r.min + r.max) / 2);
        const most = Math.hypot(...this.ranges.map((r) => r.max - r.min)) || 1;
        const unit = 0.95 * Math.min(wide, high) / most * this.eye.scale;
        const {cy, sy, cp, sp} = this.eye.angles();
        const byHeight = !this.own || this.by.selectedIndex === 1;
        const size = Math.round(this.size.valueAsNumber * ratio), half = size >> 1;
        for (let i = 0; i < this.x.length; i++) {
            const x = this.x[i] - mx, y = this.y[i] - my, z = this.z[i] - mz;
            const ahead = cy * z - sy * x;
            const px = Math.round(wide / 2 + (cy * x + sy * z) * unit) - half;
            const py = Math.round(high / 2 - (cp * y - sp * ahead) * unit) - half;
            const near = sp * y + cp * ahead;
            if (!(px >= 0 && py >= 0 && px + size <= wide && py + size <= high)) continue; // NaN: left out
            const colour = byHeight ? palette[shadeOf(this.y[i], this.range)] : this.own[i];
            for (let row = py; row < py + size; row++) {
                for (let at = row * wide + px; at < row * wide + px + size; at++) {
                    if (near > this.depth[at]) [this.depth[at], pixels[at], this.owner[at]] = [near, colour, i];
                }
            }
        }
        this.wide = wide;
        context.putImageData(image, 0, 0);
        if (byHeight) drawScale(context, this.range, width - 78, 30, height - 60, "y, mm");
        this.drawBar(context, height, unit / ratio);
        this.drawChosen(context, [mx, my, mz], unit, ratio, wide, high);
    }

    drawBar(context, height, unit) {
        const length = ticks(0, 160 / unit, 2).at(-1).at;
        context.fillStyle = cssColour("--ink");
        context.textAlign = "left";
        context.fillRect(12, height - 14, length * unit, 3);
        context.fillText(`${+length.toPrecision(3)} mm`, 12, height - 20);
    }

    drawChosen(context, [mx, my, mz], unit, ratio, wide, high) {
        if (this.chosen === undefined) return;
        const x = this.x[this.chosen] - mx, y = this.y[this.chosen] - my, z = this.z[this.chosen] - mz;
        const {cy, sy, cp, sp} = this.eye.angles();
        const px = (wide / 2 + (cy * x + sy * z) * unit) / ratio;
        const py = (high / 2 - (cp * y - sp * (cy * z - sy * x)) * unit) / ratio;
        context.strokeStyle = cssColour("--ink");
        context.lineWidth = 2;
        context.strokeRect(px - 7, py - 7, 14, 14);
    }

    choose(i) {
        this.chosen = i;
        const bytes = this.own ? [0, 8, 16].map((shift) => (this.own[i] >> shift & 255).toString(16).padStart(2, "0")) : [];
        const number = view.cloud.thinned ? "" : ` ${i + 1}`;
        this.readout.textContent = `point${number}: x ${mm(this.x[i])}, y ${mm(this.y[i])}, z ${mm(this.z[i])}` +
            (this.own ? `, colour #${bytes.join("")}` : "");
        this.sheet.redraw();
    }

    /// The drawn point nearest to a place.
    pick({x, y}) {
        const ratio = this.sheet.ratio, reach = Math.round(8 * ratio);
        let best = -1, least = Infinity;
        for (let dy = -reach; dy <= reach; dy++) {
            for (let dx = -reach; dx <= reach; dx++) {
                const px = Math.round(x * ratio) + dx, py = Math.round(y * ratio) + dy;
                const far = dx * dx + dy * dy;
                if (px < 0 || px >= this.wide || far >= least) continue;
                const owner = this.owner[py * this.wide + px] ?? -1;
                if (owner >= 0) [best, least] = [owner, far];
            }
        }
        if (best >= 0) this.choose(best);
    }

    listen() {
        const {canvas} = this.sheet;
        this.eye.listen(canvas, (event) => this.pick(this.sheet.place(event)));
        const next = () => this.choose(((this.chosen ?? -1) + 1) % this.x.length);
        onKeys(canvas, {n: next, N: next});
    }
}

async function show() {
    const packed = view.cloud;
    const lengths = [packed.count];
    const [x, y, z] = [await numbers(packed.x, lengths), await numbers(packed.y, lengths), await numbers(packed.z, lengths)];
    let own = null;
    if (packed.colours) {
        own = Uint32Array.from(await unpack(packed.colours).then(codes), (rgb) => abgr(rgb.toString(16)));
    }
    new Cloud(addPart("Cloud", "cloud"), {x, y, z, own});
    await new Promise(requestAnimationFrame);
    tellTime("First picture");
}

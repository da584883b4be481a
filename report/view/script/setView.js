// The page of a scan or recording: the height map, then one profile at a time.

/// One profile at a time, and the profiles around it one above the other.
function showSet(profiles, plan) {
    const part = addPart("Profile by profile", "records");
    const tools = add(part, "div", "", {class: "tools"});
    const slider = addInput(tools, "Profile", {type: "range", min: "1", max: profiles.length, value: "1", id: "slider"},
        (input) => go(input.valueAsNumber - 1));
    const number = add(tools, "output", "", {id: "record"});
    const plot = new LinePlot(part, "plot", "x, mm", "y, mm");
    const falls = add(part, "div");
    add(falls, "h3", "Waterfall");
    const sheet = new Sheet(falls, "The profiles around this one, one above the other",
        (...all) => drawWaterfall(profiles, current, ...all));
    let current = 0;
    const go = (i) => {
        current = i;
        slider.value = i + 1;
        const profile = profiles[i];
        const z = Number.isFinite(profile.z) ? `, z ${+profile.z.toPrecision(9)} mm in the file` : "";
        number.textContent = `${i + 1} of ${profiles.length}: ${profile.x.length} points${z}`;
        plot.show([{...profile, name: `profile ${i + 1}`}], view.gap, true);
        sheet.redraw();
    };
    go(Math.max(0, profiles.findIndex((p) => p.x.length > 0)));
    plot.window = {x: view.xRange, y: view.yRange};
    plot.showAll = () => {
        plot.window = {x: {...view.xRange}, y: {...view.yRange}};
        plot.redraw();
    };
    plot.showAll();
    if (plan && plan.map.recordsPerRow) {
        plan.chosen = (cell) => go(Math.min(profiles.length - 1, cell.row * plan.map.recordsPerRow));
    }
}

function drawWaterfall(profiles, current, context, width, height) {
    const count = Math.min(40, profiles.length);
    const first = Math.max(0, Math.min(profiles.length - count, current - (count >> 1)));
    const {min: x0, max: x1} = view.xRange, {min: y0, max: y1} = view.yRange;
    const step = (height - 110) / Math.max(1, count - 1), tall = 70;
    const toX = (x) => 64 + (x - x0) / (x1 - x0) * (width - 80);
    context.textAlign = "right";
    for (let i = count - 1; i >= 0; i--) {
        const p = profiles[first + i], bottom = height - 30 - i * step;
        const points = [];
        for (let k = 0; k < p.x.length; k++) {
            if (Number.isFinite(p.x[k]) && Number.isFinite(p.y[k])) points.push([toX(p.x[k]), bottom - (p.y[k] - y0) / (y1 - y0) * tall]);
        }
        const isCurrent = first + i === current;
        context.strokeStyle = cssColour(isCurrent ? "--orange" : "--blue");
        context.lineWidth = isCurrent ? 3 : 1;
        let last = null;
        context.beginPath();
        for (const [x, y] of points) {
            if (last !== null && Math.abs(x - last) <= view.gap / (x1 - x0) * (width - 80)) context.lineTo(x, y);
            else context.moveTo(x, y);
            last = x;
        }
        context.stroke();
        context.fillStyle = cssColour("--ink");
        if (isCurrent || i % Math.ceil(16 / Math.max(step, 0.1)) === 0) context.fillText(first + i + 1, 58, bottom + 4);
    }
    context.textAlign = "left";
    context.fillText("profile", 4, 14);
    context.textAlign = "center";
    for (const tick of ticks(x0, x1, width / 90)) context.fillText(tick.text, toX(tick.at), height - 14);
    context.fillText("x, mm", width / 2, height - 1);
}

async function show() {
    const plan = view.map ? await showMap(view.map, addPart("Height map", "map")) : null;
    await new Promise((done) => setTimeout(done)); // the picture is seen first
    if (view.profiles) showSet(await readProfiles(view.profiles), plan);
    if (!plan) tellTime("First picture");
}

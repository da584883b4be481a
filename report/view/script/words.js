// Numbers and elements for readers.

const numberText = (v) => Number.isFinite(v) ? v.toFixed(view.decimals).replace(/^-(0(\.0*)?)$/, "$1") : "missing";
const mm = (v) => Number.isFinite(v) ? numberText(v) + " mm" : "missing";

/// An element with text and attributes, inside `host`.
function add(host, tag, text = "", attributes = {}) {
    const element = document.createElement(tag);
    element.textContent = text;
    for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
    host.append(element);
    return element;
}

function addButton(host, text, title, action) {
    const button = add(host, "button", text, {type: "button", title, "aria-label": title});
    button.addEventListener("click", action);
    return button;
}

/// A choice of one of several words.
function addSelect(host, label, words, action) {
    const select = add(add(host, "label", label + " "), "select");
    for (const word of words) add(select, "option", word);
    select.addEventListener("change", () => action(select.selectedIndex));
    return select;
}

/// An input with its label.
function addInput(host, label, attributes, action) {
    const input = add(add(host, "label", label + " "), "input", "", attributes);
    input.addEventListener("input", () => action(input));
    return input;
}

/// A section of the page with its heading.
function addPart(title, id) {
    const part = add(document.getElementById("live"), "section", "", {id});
    add(part, "h2", title);
    return part;
}

/// Ticks at 1, 2 or 5 times a power of ten.
function ticks(min, max, wanted) {
    const rough = (max - min) / Math.max(1, wanted);
    const power = 10 ** Math.floor(Math.log10(rough));
    const step = power * (rough / power < 1.5 ? 1 : rough / power < 3.5 ? 2 : rough / power < 7.5 ? 5 : 10);
    const decimals = Math.max(0, Math.min(9, -Math.floor(Math.log10(step) + 1e-9)));
    const list = [];
    for (let i = Math.ceil(min / step); i * step <= max && list.length < 100; i++) {
        list.push({at: i * step, text: (i * step).toFixed(decimals).replace(/^-(0(\.0*)?)$/, "$1")});
    }
    return list;
}

const cssColour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

/// The colour of one of several lines.
const seriesColour = (i) => cssColour("--" + ["blue", "orange", "green", "purple", "black", "olive"][i % 6]);

/// A canvas that is drawn anew when its size or the colour scheme changes. `draw(context, width, height)` draws in
/// pixels of the page; `ratio` are the pixels of the screen for each.
class Sheet {
    constructor(host, label, draw, help = "") {
        this.canvas = add(host, "canvas", "", {tabindex: "0", role: "img", "aria-label": label});
        if (help) {
            const id = `help-${document.querySelectorAll("canvas").length}`;
            add(host, "p", help, {class: "help", id});
            this.canvas.setAttribute("aria-describedby", id);
        }
        this.draw = draw;
        new ResizeObserver(() => this.redraw()).observe(this.canvas);
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.redraw());
    }

    redraw() {
        const {canvas} = this;
        const ratio = this.ratio = window.devicePixelRatio || 1;
        const width = canvas.clientWidth, height = canvas.clientHeight;
        if (!width || !height) return;
        canvas.width = Math.round(width * ratio);
        canvas.height = Math.round(height * ratio);
        const context = canvas.getContext("2d");
        context.scale(ratio, ratio);
        context.font = "12px system-ui, sans-serif";
        this.draw(context, width, height);
    }

    /// The place of an event on the canvas.
    place(event) {
        const box = this.canvas.getBoundingClientRect();
        return {x: event.clientX - box.left, y: event.clientY - box.top};
    }

}

/// Calls the action of a key with 1, or 10 with Shift.
function onKeys(canvas, actions) {
    canvas.addEventListener("keydown", (event) => {
        const action = actions[event.key];
        if (!action || event.ctrlKey || event.metaKey || event.altKey) return;
        event.preventDefault();
        action(event.shiftKey ? 10 : 1);
    });
}

/// Calls `zoom(isIn, event)` where the wheel turns over a canvas that has the focus; else the page scrolls.
function onWheel(canvas, zoom) {
    canvas.addEventListener("wheel", (event) => {
        if (document.activeElement !== canvas) return;
        event.preventDefault();
        zoom(event.deltaY < 0, event);
    }, {passive: false});
}

/// Axes around an area, with ticks and labels. Returns what turns values into pixels and back.
function drawAxes(context, area, x, y, xLabel, yLabel) {
    const toX = (v) => area.left + (v - x.min) / (x.max - x.min) * area.width;
    const toY = (v) => area.top + (y.max - v) / (y.max - y.min) * area.height;
    context.strokeStyle = cssColour("--line");
    context.fillStyle = cssColour("--ink");
    context.lineWidth = 1;
    context.textAlign = "center";
    for (const tick of ticks(x.min, x.max, area.width / 80)) {
        line(context, [[toX(tick.at), area.top], [toX(tick.at), area.top + area.height + 4]]);
        context.fillText(tick.text, toX(tick.at), area.top + area.height + 16);
    }
    context.fillText(xLabel, area.left + area.width / 2, area.top + area.height + 34);
    context.textAlign = "right";
    for (const tick of ticks(y.min, y.max, area.height / 45)) {
        line(context, [[area.left - 4, toY(tick.at)], [area.left + area.width, toY(tick.at)]]);
        context.fillText(tick.text, area.left - 7, toY(tick.at) + 4);
    }
    context.textAlign = "left";
    context.fillText(yLabel, 4, area.top - 8);
    context.strokeRect(area.left, area.top, area.width, area.height);
    return {toX, toY, fromX: (p) => x.min + (p - area.left) / area.width * (x.max - x.min),
            fromY: (p) => y.max - (p - area.top) / area.height * (y.max - y.min)};
}

function line(context, points) {
    context.beginPath();
    points.forEach(([x, y], i) => i ? context.lineTo(x, y) : context.moveTo(x, y));
    context.stroke();
}

function ring(context, x, y, radius) {
    context.beginPath();
    context.arc(x, y, radius, 0, 7);
    context.stroke();
}

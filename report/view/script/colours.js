// Values as colours, the same as in the picture that stands here without script.

const palette = Uint32Array.from(view.colours.match(/.{6}/g), (text) => abgr(text));
const MISSING = [abgr("d9c8ee"), abgr("8e6bbf")]; // a hatch that no colour of a value resembles

/// A colour RRGGBB as a pixel of an image in memory.
function abgr(text) {
    const rgb = parseInt(text, 16);
    return (0xff000000 | (rgb & 255) << 16 | rgb & 0xff00 | rgb >> 16) >>> 0;
}

const missingPixel = (x, y) => MISSING[(x + y) % 8 < 1 ? 1 : 0];

/// The place of a value in the palette; those beyond the range have the colour of its end.
function shadeOf(value, range) {
    const part = (value - range.min) / (range.max - range.min || 1);
    return Math.round(Math.min(1, Math.max(0, part)) * 255);
}

/// The colours with their heights, and what missing cells look like, right of `left`.
function drawScale(context, range, left, top, height, label) {
    for (let i = 0; i < height; i++) {
        const rgb = view.colours.substr(6 * Math.round((1 - i / Math.max(1, height - 1)) * 255), 6);
        context.fillStyle = `#${rgb}`;
        context.fillRect(left, top + i, 14, 1.5);
    }
    context.fillStyle = context.strokeStyle = cssColour("--ink");
    context.textAlign = "left";
    for (const tick of ticks(range.min, range.max, height / 45)) {
        const y = top + (range.max - tick.at) / (range.max - range.min || 1) * height;
        context.fillRect(left + 14, y, 4, 1);
        context.fillText(tick.text, left + 21, y + 4);
    }
    context.textAlign = "right";
    context.fillText(label, left + 74, top - 8);
}

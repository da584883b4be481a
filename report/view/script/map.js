// A height map: from above, as a surface, and in sections.

/// @param part of the page, which it fills
async function showMap(packed, part) {
    const lengths = new Array(packed.rows).fill(packed.columns);
    const [values, low, high] = [await numbers(packed.values, lengths), packed.low && await numbers(packed.low, lengths),
                                 packed.high && await numbers(packed.high, lengths)];
    const map = {...packed, values, low, high};
    const grid = add(part, "div", "", {class: "pair"});
    const [left, right] = [add(grid, "div"), add(grid, "div")];
    const side = add(part, "div");
    let section = null;
    const onSection = (from, to) => {
        if (!section) {
            add(side, "h3", "Section");
            section = new LinePlot(side, "section", map.isLength ? "along the section, mm" : "along the section", map.heightLabel);
        }
        section.show([{name: "", ...cellsBetween({...map, values: plan.shown}, from, to)}]);
    };
    const plan = new Plan(left, map, {onSection, onCell: (cell) => plan.chosen?.(cell)});
    plan.sheet.redraw();
    tellTime("First picture");
    try {
        const surface = new Surface(right, map, plan.range);
        surface.draw();
        surface.finish();
        plan.onLayer = (layer) => surface.show(layer, plan.range);
        plan.onRange = (range) => surface.show(plan.shown, range);
        tellTime("surface");
    } catch (error) {
        grid.classList.remove("pair");
        right.replaceChildren();
        add(right, "p", `No surface: this browser draws none (${error.message}). The map from above shows the same cells.`,
            {class: "warning", id: "no-surface"});
    }
    return plan;
}
